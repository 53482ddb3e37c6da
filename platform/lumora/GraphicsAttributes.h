#ifndef VORLANE_PLATFORM_LUMORA_GRAPHICSATTRIBUTES_H
#define VORLANE_PLATFORM_LUMORA_GRAPHICSATTRIBUTES_H

/// \file
/// The display state of a scene as a whole, with its lights and its material.

#include "platform/Export.h"
#include "platform/lumora/Colored.h"
#include "platform/orrin/Color.h"
#include "platform/spatia/Matrix4x4.h"
#include "platform/spatia/Point3d.h"

#include <cstdint>

namespace Lumora {

/// A coloured light.
class VORLANE_PLATFORM_EXPORT LightSource : public Colored
{
public:
    LightSource() = default;
    LightSource(LightSource const&) = default;
    LightSource& operator=(LightSource const&) = default;
    virtual ~LightSource();

    /// Where the light is, and a flag of the application.
    Spatia::Point3d point;
    bool lightFlag = false;
};

/// How a surface answers light.
class VORLANE_PLATFORM_EXPORT MaterialProperty
{
public:
    MaterialProperty() = default;
    MaterialProperty(MaterialProperty const&) = default;
    /// Takes all values.
    void operator=(MaterialProperty const& other);
    virtual ~MaterialProperty();

    /// The properties that a renderer asks for, in units of its own.
    bool GetEnabled() const { return m_enabled; }
    void SetEnabled(bool enabled) { m_enabled = enabled; }
    float GetAmbient() const { return m_ambient; }
    void SetAmbient(float ambient) { m_ambient = ambient; }
    float GetDiffuse() const { return m_diffuse; }
    void SetDiffuse(float diffuse) { m_diffuse = diffuse; }
    float GetEmission() const { return m_emission; }
    void SetEmission(float emission) { m_emission = emission; }
    int GetShininess() const { return m_shininess; }
    void SetShininess(int shininess) { m_shininess = shininess; }
    float GetSpecular() const { return m_specular; }
    void SetSpecular(float specular) { m_specular = specular; }

private:
    bool m_enabled = false;
    float m_ambient = 0.0f;
    float m_diffuse = 0.0f;
    float m_emission = 0.0f;
    int m_shininess = 0;
    float m_specular = 0.0f;
};

/// The display state of a scene.
class VORLANE_PLATFORM_EXPORT GraphicsAttributes
{
public:
    /// 0, 1 and 2 are known; every 32-bit number can be held.
    enum Mode : std::int32_t
    {
    };

    /// The capacity of the array of lights: 4.
    static constexpr int GetMaxNumberOfLights() { return maxNumberOfLights; }

    /// One of the lights.
    ///
    /// \throws CInvalidArgException if `index` is outside 0 to GetMaxNumberOfLights() minus 1.
    LightSource GetLight(int index) const;
    void SetLight(int index, LightSource const& light);

    /// The colour behind the scene, and the material of its surfaces.
    Orrin::Color GetBkColor() const { return backgroundColor; }
    void SetBkColor(Orrin::Color const& color) { backgroundColor = color; }
    MaterialProperty GetMaterialProperty() const { return material; }
    void SetMaterialProperty(MaterialProperty const& property) { material = property; }

private:
    static constexpr int maxNumberOfLights = 4;

public:
    /// What a renderer keeps with a scene. The numbers in the names follow the order of the archive; they
    /// mean what the application says.
    float attrFloat1 = 0.0f;
    std::int32_t attrWord1 = 0;
    std::int32_t attrWord2 = 0;
    LightSource lights[maxNumberOfLights];
    std::int32_t attrSwitch1 = 0; ///< 0 or 1
    std::int32_t attrSwitch2 = 0; ///< 0 or 1
    float attrFloat2 = 0.0f;
    float attrFloat6 = 0.0f;
    float attrFloat7 = 0.0f;
    float attrFloat3 = 0.0f;
    Orrin::Color backgroundColor;
    float attrFloat4 = 0.0f;
    float attrFloat5 = 0.0f;
    Mode attrMode = Mode();
    float attrFloat8 = 0.0f;
    float attrFloat9 = 0.0f;
    bool attrFlag = false;
    Spatia::Matrix4x4 attrMatrix;
    MaterialProperty material;
};

} // namespace Lumora

#endif
