// Reading of *DEFINE_TRANSFORMATION, and applying it.
#include "key_transforms.h"

#include <cmath>

#include "text/fields.h"

namespace kvo {

namespace {

// Numbers of points are read as reals, like all else in a step.
bool isPointNumber(double number)
{
    return std::fabs(number) < 9e15;
}

Transform scaling(double x, double y, double z)
{
    Transform result;
    result.m[0][0] = x;
    result.m[1][1] = y;
    result.m[2][2] = z;
    return result;
}

// At the plane through a point, normal to the way from there to another.
bool mirror(const double* a, Transform& result)
{
    const Vec3 normal = {a[3] - a[0], a[4] - a[1], a[5] - a[2]};
    const double square = normal[0] * normal[0] + normal[1] * normal[1] + normal[2] * normal[2];
    if (!(square > 0.0)) {
        return false;
    }
    const double distance = normal[0] * a[0] + normal[1] * a[1] + normal[2] * a[2];
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            result.m[i][j] = (i == j ? 1.0 : 0.0) - 2.0 * normal[i] * normal[j] / square;
        }
        result.t[i] = 2.0 * normal[i] * distance / square;
    }
    return true;
}

// Of a rigid motion.
Transform inverse(const Transform& forth)
{
    Transform back;
    for (int i = 0; i < 3; ++i) {
        for (int j = 0; j < 3; ++j) {
            back.m[i][j] = forth.m[j][i];
        }
    }
    for (int i = 0; i < 3; ++i) {
        back.t[i] = -(back.m[i][0] * forth.t[0] + back.m[i][1] * forth.t[1] + back.m[i][2] * forth.t[2]);
    }
    return back;
}

} // namespace

bool KeyTransforms::begin(int)
{
    titled = context.keyword.takeOption("TITLE");
    at = 0;
    id = 0;
    points.clear();
    return context.keyword.options.empty();
}

void KeyTransforms::line(std::string_view text)
{
    ++at;
    if (titled && at == 1) {
        return;
    }
    KeyFields fields = context.fields(text);
    if (at == (titled ? 2 : 1)) {
        id = context.lines.shifted(fields.integer(10), KeyOffsets::Define);
        if (context.accept(fields)) {
            transforms[id] = {};
        }
        return;
    }
    const std::string name = upperCase(fields.text(10));
    if (!name.empty() && transforms.count(id) != 0) {
        step(name, fields);
    }
}

void KeyTransforms::step(const std::string& name, KeyFields& fields)
{
    double a[7];
    for (double& value : a) {
        value = fields.real(10);
    }
    if (!context.accept(fields)) {
        return;
    }
    Transform next;
    bool good = true;
    if (name == "TRANSL") {
        next = Transform::translation({a[0], a[1], a[2]});
    } else if (name == "SCALE") {
        const auto factor = [](double value) { return value == 0.0 ? 1.0 : value; };
        next = scaling(factor(a[0]), factor(a[1]), factor(a[2]));
    } else if (name == "ROTATE") {
        good = rotation(a, next);
    } else if (name == "MIRROR") {
        good = mirror(a, next);
    } else if (name == "POS6P") {
        good = positions(a, next);
    } else if (name == "POINT") {
        good = isPointNumber(a[0]);
        if (good) {
            points[static_cast<std::int64_t>(a[0])] = {a[1], a[2], a[3]};
        }
    } else {
        good = false;
    }
    if (!good) {
        context.log.warn("steps of transformations that are not applied", context.lines.place(),
                         "transformation " + std::to_string(id) + ": " + name + " is not applied");
        return;
    }
    transforms[id] = transforms[id].then(next);
}

bool KeyTransforms::point(double number, Vec3& result) const
{
    const auto found = isPointNumber(number) ? points.find(static_cast<std::int64_t>(number)) : points.end();
    if (found == points.end()) {
        return false;
    }
    result = found->second;
    return true;
}

// Either two points and an angle, or a direction, a point of the axis and an angle.
bool KeyTransforms::rotation(const double* a, Transform& result) const
{
    Vec3 from = {a[3], a[4], a[5]};
    Vec3 to = {a[3] + a[0], a[4] + a[1], a[5] + a[2]};
    double angle = a[6];
    const bool byPoints = a[3] == 0.0 && a[4] == 0.0 && a[5] == 0.0 && a[6] == 0.0;
    if (byPoints && points.empty()) {
        return true; // a direction through the origin, and no angle
    }
    if (byPoints) {
        angle = a[2];
        if (!point(a[0], from) || !point(a[1], to)) {
            return false;
        }
    }
    result = Transform::rotation(from, to, angle);
    return from != to;
}

// From three points to three points.
bool KeyTransforms::positions(const double* a, Transform& result) const
{
    Vec3 p[6];
    for (int k = 0; k < 6; ++k) {
        if (!point(a[k], p[k])) {
            return false;
        }
    }
    Transform before;
    Transform after;
    if (!Transform::fromPoints(p[0], p[1], p[2], before) || !Transform::fromPoints(p[3], p[4], p[5], after)) {
        return false;
    }
    result = inverse(before).then(after);
    return true;
}

void KeyTransforms::closed(const KeyInclude& include, const Range& from, const Range& to)
{
    if (include.transformation != 0 || include.lengthFactor != 1.0) {
        uses.push_back({include, from, to});
    }
}

// Inner includes closed first, and come first here.
void KeyTransforms::apply(KeyElements& elements)
{
    MeshFile& file = context.file();
    for (const Use& use : uses) {
        const double factor = use.include.lengthFactor;
        Transform transform = scaling(factor, factor, factor);
        const auto found = transforms.find(use.include.transformation);
        if (found != transforms.end()) {
            transform = transform.then(found->second);
        } else if (use.include.transformation != 0) {
            context.log.warn("transformations that do not exist", use.include.place,
                             "transformation " + std::to_string(use.include.transformation) + " does not exist");
        }
        for (std::size_t node = use.from.nodes; node < use.to.nodes; ++node) {
            double* x = &file.xyz[3 * node];
            const Vec3 moved = transform.apply({x[0], x[1], x[2]});
            x[0] = moved[0];
            x[1] = moved[1];
            x[2] = moved[2];
        }
        Transform turn = transform;
        turn.t = {0.0, 0.0, 0.0};
        for (std::size_t k = use.from.orientations; k < use.to.orientations; ++k) {
            elements.oriented[k].vector = turn.apply(elements.oriented[k].vector);
        }
        for (std::size_t k = use.from.vectors; k < use.to.vectors; ++k) {
            elements.defined[k].vector = turn.apply(elements.defined[k].vector);
        }
    }
}

} // namespace kvo
