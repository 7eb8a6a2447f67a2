// Standard views: names with one meaning for every model.
//
//   name      with z up                                with y up
//   front     from -y, x to the right, z up            from +z, x to the right, y up
//   back      from +y, -x to the right, z up           from -z, -x to the right, y up
//   right     from +x, y to the right, z up            from +x, -z to the right, y up
//   left      from -x, -y to the right, z up           from -x, z to the right, y up
//   top       from +z, x to the right, y up            from +y, x to the right, -z up
//   bottom    from -z, x to the right, -y up           from -y, x to the right, z up
//   iso       from (1, -1, 1), z up                    from (1, 1, 1), y up
//
// +x, -x, +y, -y, +z, -z is the one of these that is seen from there. AZ,EL in degrees goes round the model: AZ from
// the front view towards the right one (90), the back one (180) and the left one (270), EL upwards to the top view (90)
// or downwards to the bottom view (-90).
#ifndef KVO_VIEW_NAMES_H
#define KVO_VIEW_NAMES_H

#include <array>
#include <optional>
#include <string>

#include <kvo/camera.h>

namespace kvo {

// iso, top, bottom, left, right, front, back.
KVO_EXPORT const std::array<const char*, 7>& standardViewWords();

// azimuth: any; elevation: brought into -90 to 90.
KVO_EXPORT Rotation viewOrientation(double azimuth, double elevation, UpAxis up = UpAxis::Z);

// Of a name from the table above, "+x" to "-z", or "AZ,EL" with EL from -90 to 90; nothing for other text.
KVO_EXPORT std::optional<Rotation> viewOrientation(const std::string& text, UpAxis up = UpAxis::Z);

} // namespace kvo

#endif
