#pragma once

#include <vector>

#include "plush/scene/scene.h"
#include "script/binding.h"

// Scene data out of script values. Element 1 of a script's table is entry 0, in arrays and in tables with the
// keys "1" to "n". False for values of another shape.
namespace kelmora {

// Missing entries are 0.
[[nodiscard]] bool convertTableOfTables(const Variable& value, TileTable& tables);
// The first element is not a texture.
[[nodiscard]] bool convertTextureTable(const Variable& value, std::vector<PlushImage*>& textures);

enum class QuadForm { Textured, Bare };

// Raises for a coordinate that is no number.
[[nodiscard]] bool convertQuadValue(const BindingCall& call, const Variable& value, QuadForm form,
                                    Quad& quad);
[[nodiscard]] bool convertQuadTable(const BindingCall& call, const Variable& value, QuadForm form,
                                    std::vector<Quad>& quads);

// The elements of a table in their order, null for gaps. They are borrowed.
[[nodiscard]] bool elementsOf(const Variable& value, std::vector<const Variable*>& elements);

}  // namespace kelmora
