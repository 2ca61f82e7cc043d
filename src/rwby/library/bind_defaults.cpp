#include "rwby/library/library.h"

namespace vesper::ruby {

void bindDefaults(RubyVM& vm, Globals& globals) {
    for (const auto library : {valueLibrary(), arrayLibrary(), tableLibrary(), mathLibrary(), stringLibrary(),
                               patternLibrary(), fileLibrary()})
        for (const LibraryEntry& entry : library)
            globals.setGlobalSlotValue(globals.ensureGlobalSlot(entry.name),
                                       RubyValue::function(new FunctionObject(
                                           entry.kind, entry.name, entry.function, entry.arguments)));
    vm.setGlobal("VESPERRWBY_VERSION", RubyValue::text("VesperRwby 0.2"));
}

}  // namespace vesper::ruby
