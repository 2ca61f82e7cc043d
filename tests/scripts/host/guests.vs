@@ Values go over and come back by copy, kind by kind.
lua = Lua["runScript"]
ruby = Ruby["runScript"]
print(lua("return 1, 2.5, 'x', nil, true"))                      @@ expect: 1\t2.500000\tx\tnot\ttrue
print(lua("x = 1"), lua("return {}"), ruby("return [1, [nil]]"), ruby("1 + 1"))    @@ expect: not\t[]\t[1, [not]]\tnot
Lua["setVar"]("t", {1, 2, x = [true, not]})
print(lua("return t['1'], t['2'], t.x[1], #t.x"))                @@ expect: 1\t2\ttrue\t1
Lua["setVar"]("list", {[1] = "a", [3] = "c", [0] = "dropped"})
print(lua("return #list, list[0]"), lua("return list"), Lua["getVar"]("list"), Lua["getVar"]("nosuch"))         @@ expect: 1\tnot\t{1: a, 3: c}\t{1: a, 3: c}\tnot
Ruby["setVar"]("m", {a = 1.0, b = "two"})
print(ruby("return m['a'] + len(m['b'])"), Ruby["getVar"]("m"), Ruby["getVar"]("nosuch"))    @@ expect: 4\t{a: 1.000000, b: two}\tnot
print(lua("return 5000000000, 2147483647"), typeOf(Lua["runScript"]("return 5000000000")))   @@ expect: 5000000000.000000\t2147483647\tnumber
print(pcall(Lua["setVar"], "f", print))                          @@ expect: false\tLua.setVar: cannot convert VesperScript function values into Lua
print(pcall(Ruby["setVar"], "p", Plush["createImage"](1, 1, 0, 0, 0, 0)))    @@ expect: false\tRuby.setVar: cannot convert VesperScript pointer values into Ruby
print(pcall(Ruby["setVar"], "b", Lua["compileBytecode"]("")))    @@ expect: false\tRuby.setVar: cannot convert VesperScript raw values into Ruby
print(pcall(lua, "return print"))                                @@ expect: false\tLua.runScript: cannot convert Lua function values into VesperScript
print(pcall(lua, "return math.huge"))                            @@ expect: false\tLua.runScript: Lua float must be finite
print(pcall(ruby, "return math_pow(10, 39)"))                        @@ expect: false\tRuby.runScript: Ruby float is outside the VesperScript float range

@@ 64 containers around a value pass, one more does not.
function nested(levels)
    local value = "core"
    for i = 1, levels
        value = [value]
    end
    return value
end
Lua["setVar"]("deep", nested(64))
print(toString(Lua["getVar"]("deep")) == toString(nested(64)))   @@ expect: true
print(pcall(Lua["setVar"], "deep", nested(65)))                  @@ expect: false\tLua.setVar: value nesting is too deep to bridge into Lua
print(pcall(lua, "local t = {} t.t = t return t"))               @@ expect: false\tLua.runScript: value nesting is too deep to bridge into VesperScript
print(pcall(ruby, "a = []\narray_push(a, a)\nreturn a"))         @@ expect: false\tRuby.runScript: value nesting is too deep to bridge into VesperScript
ruby("array_pop(a)")

@@ Each language reaches the others' globals.
score = 3
print(lua("return vesper_var('score', vesper_var('score') + 4)"), score)     @@ expect: 7\t7
print(ruby("return vesper_var('score', 'text')"), score)         @@ expect: text\ttext
lua("chosen = {'tea', 2}")
print(ruby("return lua_var('chosen')"), ruby("return lua_var('missing')"))   @@ expect: [tea, 2]\tnot
print(lua("return ruby_var('fresh', {a = 1}).a, ruby_var('gone')"), Ruby["getVar"]("fresh"))     @@ expect: 1\tnot\t{a: 1}
print(lua("return time_ms() > 0"))                               @@ expect: true
print(pcall(lua, "return vesper_var('gone')"))                   @@ expect: false\t<string>:1: Variable not found: gone
print(pcall(lua, "return vesper_var()"))                         @@ expect: false\t<string>:1: vesper_var: expects vesper_var(name) or vesper_var(name, value)
print(pcall(ruby, "lua_var(5)"))                                 @@ expect: false\t<string>:1: lua_var: name must be a string
print(pcall(lua, "time_ms(1)"))                                  @@ expect: false\t<string>:1: time_ms: expects no arguments

@@ Failures come with the guest's own place.
print(pcall(lua, "x = 1\nerror('broken')", "scene"))             @@ expect: false\tscene:2: broken
print(pcall(ruby, "\n\nnosuch()", "rules"))                      @@ expect: false\trules:3: undefined variable or function 'nosuch'
print(pcall(lua))                                                @@ expect: false\tLua.runScript: missing argument 1
print(pcall(Lua["runBytecode"], "text"))                         @@ expect: false\tLua.runBytecode: bytecode must be raw bytecode data
print(pcall(Ruby["runBytecode"], not))                           @@ expect: false\tRuby.runBytecode: bytecode must be raw bytecode data
print(pcall(Lua["runFile"], "gone.lua"))                         @@ expect: false\tfailed to open file: gone.lua
print(pcall(Ruby["runFile"], "gone.rwby"))                       @@ expect: false\tunable to open script file: gone.rwby

@@ Images run like their sources.
image = Lua["compileBytecode"]("return 6 * 7", "answer")
print(typeOf(image), Lua["runBytecode"](image), Ruby["runBytecode"](Ruby["compileBytecode"]("return 'r'")))      @@ expect: userdata\t42\tr
print(pcall(Lua["compileBytecode"], "x ="))                      @@ expect: false\t<string>:1:4: expected expression
lua("ring = {}; ring.ring = ring")
print(pcall(Lua["getVar"], "ring"))                              @@ expect: false\tLua.getVar: value nesting is too deep to bridge into VesperScript

@@ What is shared over and over is no way to fill the memory.
many = [1]
for i = 1, 40
    many = [many, many]
end
print(pcall(Lua["setVar"], "many", many))                        @@ expect: false\tLua.setVar: value is too large to bridge into Lua
print(pcall(ruby, "m = [1]\ni = 0\nwhile i < 40\nm = [m, m]\ni = i + 1\nend\nreturn m"))    @@ expect: false\tRuby.runScript: value is too large to bridge into VesperScript
