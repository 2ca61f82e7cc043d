#include "bindings/scene_arguments.h"

#include <algorithm>

#include "base/saturating.h"
#include "script/table_object.h"

namespace kelmora {
namespace {

// Gaps cost nothing to write down, so they are what a script could ask too much memory with.
constexpr std::int32_t largestKey = 1 << 20;
constexpr std::size_t maximumTiles = std::size_t{1} << 24;

bool sparseElements(const TableObject& table, std::vector<const Variable*>& elements) {
    const auto list = table.sortedKeys();
    for (std::size_t i = 0; i < list->keys.size(); ++i) {
        const Variable& key = list->keyValues[i];
        if (!key.isInt() || key.intValue() < 1 || key.intValue() > largestKey) return false;
        const auto place = static_cast<std::size_t>(key.intValue());
        if (elements.size() < place) elements.resize(place, nullptr);
        elements[place - 1] = table.findListed(*list, i);
    }
    return true;
}

bool isGap(const Variable* element) {
    return !element || element->isNot();
}

std::int32_t wholeNumber(const Variable& value) {
    return value.isInt() ? value.intValue() : saturatingInt(numericValue(value, "", ""));
}

bool convertColumn(const Variable& value, std::vector<std::int32_t>& column) {
    std::vector<const Variable*> elements;
    if (!elementsOf(value, elements)) return false;
    column.reserve(elements.size());
    for (const Variable* element : elements) {
        if (!isGap(element) && !element->isNumeric()) return false;
        column.push_back(isGap(element) ? 0 : wholeNumber(*element));
    }
    return true;
}

const Variable* elementAt(const Variable& value, std::int32_t number) {
    if (value.isTable()) return value.table().find(number);
    const std::vector<Variable>& items = value.items();
    return static_cast<std::size_t>(number) <= items.size() ? &items[static_cast<std::size_t>(number - 1)]
                                                            : nullptr;
}

bool convertCorner(const BindingCall& call, const TableObject& quad, std::string_view key, Vec3& corner) {
    const Variable* value = quad.find(key);
    if (!value || !(value->isArray() || value->isTable())) return false;
    float* const fields[] = {&corner.x, &corner.y, &corner.z};
    for (std::int32_t i = 0; i < 3; ++i) {
        const Variable* coordinate = elementAt(*value, i + 1);
        if (!coordinate) return false;
        *fields[i] = static_cast<float>(numericValue(*coordinate, call.function(), "quad coordinate"));
    }
    return true;
}

}  // namespace

bool elementsOf(const Variable& value, std::vector<const Variable*>& elements) {
    if (!value.isArray() && !value.isTable()) return false;
    if (value.isTable() && value.table().size() != value.table().numericLength())
        return sparseElements(value.table(), elements);
    const std::vector<Variable>& items = value.isArray() ? value.items() : value.table().denseValues();
    elements.reserve(items.size());
    for (const Variable& item : items) elements.push_back(&item);
    return true;
}

bool convertTableOfTables(const Variable& value, TileTable& tables) {
    std::vector<const Variable*> columns;
    if (!elementsOf(value, columns)) return false;
    std::size_t tiles = 0;
    for (const Variable* column : columns) {
        tables.emplace_back();
        if (isGap(column)) continue;
        if (!convertColumn(*column, tables.back())) return false;
        tiles += tables.back().size();
        if (tiles > maximumTiles) return false;
    }
    return true;
}

bool convertTextureTable(const Variable& value, std::vector<PlushImage*>& textures) {
    std::vector<const Variable*> elements;
    if (!elementsOf(value, elements) || (!elements.empty() && !isGap(elements.front()))) return false;
    for (const Variable* element : elements) {
        if (!isGap(element) && !element->isPointer()) return false;
        textures.push_back(isGap(element) ? nullptr : static_cast<PlushImage*>(element->pointerValue()));
    }
    return true;
}

bool convertQuadValue(const BindingCall& call, const Variable& value, QuadForm form, Quad& quad) {
    if (!value.isTable()) return false;
    const TableObject& table = value.table();
    if (!convertCorner(call, table, "tl", quad.tl) || !convertCorner(call, table, "tr", quad.tr) ||
        !convertCorner(call, table, "br", quad.br) || !convertCorner(call, table, "bl", quad.bl))
        return false;
    if (form == QuadForm::Textured) {
        const Variable* texture = table.find(std::string_view("texture"));
        if (!texture || !texture->isNumeric()) return false;
        quad.texture = wholeNumber(*texture);
    }
    finalizeQuad(quad);
    return true;
}

bool convertQuadTable(const BindingCall& call, const Variable& value, QuadForm form,
                      std::vector<Quad>& quads) {
    std::vector<const Variable*> elements;
    if (!elementsOf(value, elements)) return false;
    for (const Variable* element : elements) {
        Quad quad;
        if (!element || !convertQuadValue(call, *element, form, quad)) return false;
        quads.push_back(quad);
    }
    return true;
}

}  // namespace kelmora
