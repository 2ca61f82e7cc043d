#include "bindings/modules.h"
#include "bindings/scene_arguments.h"
#include "plush/scene/collision.h"

namespace kelmora {
namespace {

Variable narrowed(double value) {
    return Variable::number(static_cast<float>(value));
}

Variable faceRange(const BindingCall& call) {
    call.require(6);
    const double x1 = call.number(0, "x1");
    const double y1 = call.number(1, "y1");
    const double x2 = call.number(2, "x2");
    const double y2 = call.number(3, "y2");
    const double direction = call.number(4, "direction");
    return Variable::boolean(isInView(x1, y1, x2, y2, direction, call.number(5, "fov")));
}

Variable faceHeight(const BindingCall& call) {
    call.require(3);
    Quad quad;
    if (!convertQuadValue(call, call.at(0), QuadForm::Bare, quad))
        call.fail("argument 1 (quad) must be a quad table");
    const double x = call.number(1, "x");
    double height = 0;
    if (!heightOnQuadAtXY(quad, x, call.number(2, "y"), height)) return Variable::boolean(false);
    return narrowed(height);
}

Variable faceCentre(const BindingCall& call) {
    std::vector<Quad> quads;
    if (!convertQuadTable(call, call.at(0), QuadForm::Bare, quads))
        call.fail("argument 1 (quads) must be a table of quad tables");
    const Vector centre = quadTableCentre(quads);
    return returnValues({narrowed(centre.x), narrowed(centre.y), narrowed(centre.z)});
}

Variable faceContains(const BindingCall& call) {
    call.require(4);
    constexpr std::size_t faces = 6;
    std::vector<const Variable*> elements;
    if (!elementsOf(call.at(0), elements) || elements.size() != faces)
        call.fail("argument 1 (box) must be a table of 6 quad tables");
    std::vector<Quad> box(faces);
    for (std::size_t i = 0; i < faces; ++i)
        if (!elements[i] || !convertQuadValue(call, *elements[i], QuadForm::Bare, box[i]))
            call.fail("argument 1 (box) must be a table of 6 valid quad tables");
    const double x = call.number(1, "x");
    const double y = call.number(2, "y");
    return Variable::boolean(quadBoxContainsPoint(box, {x, y, call.number(3, "z")}));
}

constexpr BindingRow rows[] = {
    {"visible", faceRange},
    {"height", faceHeight},
    {"centre", faceCentre},
    {"contains", faceContains},
};

}  // namespace

std::span<const BindingRow> jadeBindings() {
    return rows;
}

}  // namespace kelmora
