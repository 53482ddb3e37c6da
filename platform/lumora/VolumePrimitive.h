#ifndef VORLANE_PLATFORM_LUMORA_VOLUMEPRIMITIVE_H
#define VORLANE_PLATFORM_LUMORA_VOLUMEPRIMITIVE_H

/// \file
/// The display of a volume.

#include "platform/Export.h"
#include "platform/lumora/GraphicsPrimitive.h"
#include "platform/orrin/ColorArray.h"
#include "platform/orrin/Held.h"
#include "platform/spatia/NComponentVolume.h"

#include <vector>

namespace Lumora {

/// How a volume of values is shown. The volume itself belongs to somebody else and must outlive its use here.
class VORLANE_PLATFORM_EXPORT VolumePrimitive : public GraphicsPrimitive
{
public:
    /// Without a volume, colours and transfer function.
    VolumePrimitive() : m_colors(0, 1) {}

    /// The attached volume, or null.
    Spatia::NComponentVolume<float>* GetVolume() const { return m_volume; }

    /// Attaches a volume, which is not owned; null drops the one before.
    void SetVolume(Spatia::NComponentVolume<float>* volume) { m_volume = volume; }

    /// The range of the data and the range that is shown; nothing computes them from the volume.
    float GetDataMin() const { return m_dataMin; }
    float GetDataMax() const { return m_dataMax; }
    float GetDisplayMin() const { return m_displayMin; }
    float GetDisplayMax() const { return m_displayMax; }
    void SetDataMin(float value) { m_dataMin = value; }
    void SetDataMax(float value) { m_dataMax = value; }
    void SetDisplayMin(float value) { m_displayMin = value; }
    void SetDisplayMax(float value) { m_displayMax = value; }

    /// Whether values outside the shown range are left out, the colours over it, and how much shines through.
    bool GetClipOutsideRange() const { return m_clipOutsideRange; }
    void SetClipOutsideRange(bool clip) { m_clipOutsideRange = clip; }
    Orrin::ColorArray& GetColors() { return m_colors; }
    Orrin::ColorArray const& GetColors() const { return m_colors; }
    float GetTransparency() const { return m_transparency; }
    void SetTransparency(float transparency) { m_transparency = transparency; }

    /// One entry for each step of the range: whether it is shown.
    std::vector<bool>& GetTransferFunction() { return m_transferFunction; }
    std::vector<bool> const& GetTransferFunction() const { return m_transferFunction; }

    /// Copies the transfer function.
    ///
    /// \throws CMemoryException if there is no room for the copy.
    void SetTransferFunction(std::vector<bool> const& transferFunction)
    {
        m_transferFunction = transferFunction;
    }

private:
    Spatia::NComponentVolume<float>* m_volume = nullptr;
    float m_dataMin = 0.0f;
    float m_dataMax = 0.0f;
    float m_displayMin = 0.0f;
    float m_displayMax = 0.0f;
    bool m_clipOutsideRange = false;
    Orrin::ColorArray m_colors;
    float m_transparency = 0.0f;
    Orrin::Held<std::vector<bool>> m_transferFunction;
};

} // namespace Lumora

#endif
