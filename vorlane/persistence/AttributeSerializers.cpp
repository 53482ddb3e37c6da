// The display state of a scene, its lights and its material.

#include "vorlane/colour/NamedColorArrays.h"
#include "vorlane/persistence/ArchiveForm.h"
#include "vorlane/persistence/FieldsInternal.h"
#include "vorlane/persistence/PrimitiveSerializers.h"
#include "vorlane/persistence/SchemaInternal.h"

#include <algorithm>
#include <cstdint>

using namespace Lumora;

namespace Vorlane {

namespace {

/// The first schema number whose archives hold lights; it is compared as a signed number.
constexpr std::uint32_t lightSchema = 7;

} // namespace

void Serialize(CArchive& ar, LightSource& light)
{
    if (StoredOrLoadedFromSigned(ar, lightSchema)) {
        Fields::Property(ar, SerializeColor, light, &LightSource::GetColor, &LightSource::SetColor);
        SerializePoint3d(ar, light.point);
        Fields::Bool(ar, light.lightFlag);
    }
}

void Serialize(CArchive& ar, MaterialProperty& material)
{
    using Material = MaterialProperty;
    Fields::Property(ar, Fields::Bool, material, &Material::GetEnabled, &Material::SetEnabled);
    Fields::Property(ar, Fields::Float, material, &Material::GetAmbient, &Material::SetAmbient);
    Fields::Property(ar, Fields::Float, material, &Material::GetDiffuse, &Material::SetDiffuse);
    Fields::Property(ar, Fields::Float, material, &Material::GetEmission, &Material::SetEmission);
    Fields::Property(ar, Fields::Int32, material, &Material::GetShininess, &Material::SetShininess);
    Fields::Property(ar, Fields::Float, material, &Material::GetSpecular, &Material::SetSpecular);
}

namespace {

/// The lights: the capacity as an int32, then each light. A load replaces the lights within the stored count,
/// and reads and drops those past the capacity.
void SerializeLights(CArchive& ar, GraphicsAttributes& attributes)
{
    std::int32_t const capacity = GraphicsAttributes::GetMaxNumberOfLights();
    std::int32_t count = capacity;
    Fields::Int32(ar, count);
    if (!StoredOrLoadedFromSigned(ar, lightSchema)) {
        // Lights take no bytes here, so that nothing past the capacity has to be read.
        count = std::min(count, capacity);
    }
    for (std::int32_t i = 0; i < count; ++i) {
        LightSource light = ar.IsStoring() ? attributes.GetLight(i) : LightSource();
        Serialize(ar, light);
        if (ar.IsLoading() && i < capacity) {
            attributes.SetLight(i, light);
        }
    }
}

/// Whether the mode is 0, in 1 byte. A load sets the mode to 0 or 1; the true mode may follow much later.
void SerializeModeIsZero(CArchive& ar, GraphicsAttributes::Mode& mode)
{
    bool isZero = mode == GraphicsAttributes::Mode(0);
    Fields::Bool(ar, isZero);
    if (ar.IsLoading()) {
        mode = GraphicsAttributes::Mode(isZero ? 0 : 1);
    }
}

/// The mode as an int32. A load takes 0, 1 and 2, and keeps the mode at any other number.
void SerializeKnownMode(CArchive& ar, GraphicsAttributes::Mode& mode)
{
    GraphicsAttributes::Mode stored = mode;
    Fields::Enumerator(ar, stored);
    if (ar.IsLoading() && stored >= 0 && stored <= 2) {
        mode = stored;
    }
}

} // namespace

void Serialize(CArchive& ar, GraphicsAttributes& attributes)
{
    Fields::Property(ar, SerializeColor, attributes, &GraphicsAttributes::GetBkColor,
                     &GraphicsAttributes::SetBkColor);
    if (StoredOrLoadedFrom(ar, 7)) {
        SerializeLights(ar, attributes);
        Fields::Float(ar, attributes.attrFloat1);
        Fields::Int32(ar, attributes.attrWord1);
        Fields::Int32(ar, attributes.attrWord2);
        Fields::FlagWord(ar, attributes.attrSwitch1);
        Fields::FlagWord(ar, attributes.attrSwitch2);
        Fields::Float(ar, attributes.attrFloat2);
        Fields::Float(ar, attributes.attrFloat3);
        Fields::Float(ar, attributes.attrFloat4);
        Fields::Float(ar, attributes.attrFloat5);
        SerializeModeIsZero(ar, attributes.attrMode);
        Fields::Float(ar, attributes.attrFloat6);
        Fields::Float(ar, attributes.attrFloat7);
        Fields::Whole(ar, SerializeMatrix4x4, attributes.attrMatrix);
        Fields::Float(ar, attributes.attrFloat8);
        Fields::Float(ar, attributes.attrFloat9);
    }
    if (StoredOrLoadedFrom(ar, 16)) {
        Fields::Bool(ar, attributes.attrFlag);
    }
    if (StoredOrLoadedFrom(ar, 18)) {
        Fields::Property<MaterialProperty>(ar, Serialize, attributes,
                                           &GraphicsAttributes::GetMaterialProperty,
                                           &GraphicsAttributes::SetMaterialProperty);
    }
    if (StoredOrLoadedFrom(ar, 23)) {
        SerializeKnownMode(ar, attributes.attrMode);
    }
}

} // namespace Vorlane
