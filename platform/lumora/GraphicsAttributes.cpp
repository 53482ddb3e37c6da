#include "platform/lumora/GraphicsAttributes.h"

#include "platform/framework/AfxExceptions.h"

namespace Lumora {

namespace {

int CheckedLight(int index)
{
    int const last = GraphicsAttributes::GetMaxNumberOfLights() - 1;
    if (index < 0 || index > last) {
        AfxThrowIndexException(index, last);
    }
    return index;
}

} // namespace

LightSource::~LightSource() = default;

MaterialProperty::~MaterialProperty() = default;

void MaterialProperty::operator=(MaterialProperty const& other)
{
    m_enabled = other.m_enabled;
    m_ambient = other.m_ambient;
    m_diffuse = other.m_diffuse;
    m_emission = other.m_emission;
    m_shininess = other.m_shininess;
    m_specular = other.m_specular;
}

LightSource GraphicsAttributes::GetLight(int index) const
{
    return lights[CheckedLight(index)];
}

void GraphicsAttributes::SetLight(int index, LightSource const& light)
{
    lights[CheckedLight(index)] = light;
}

} // namespace Lumora
