-- Borders of the library: what positions, counts and numbers at the edge give.
print(("abc"):sub(-100, 100), ("abc"):sub(3, -3) == "", ("abc"):sub(math.huge - math.huge == 0 and 1 or 2))
-- expect: abc\ttrue\tbc
print(("abc"):sub(-9223372036854775807, 9223372036854775807), ("abc"):byte(4), ("abc"):byte(-4, -3))
-- expect: abc\tnil\t97
print(("abc"):find("b", -1), ("abc"):find("", 4), ("abc"):find("", 5), ("abc"):find("c", -1))
-- expect: nil\t4\tnil\t3\t3
print(("a.b"):find(".", 1, true), ("a.b"):find("%."), ("a+b"):find("+", 1, true))
-- expect: 2\t2\t2\t2
print(("x=1, y=2"):gsub("(%w)=(%w)", "%2=%1"), ("abc"):gsub("", "-"), ("abc"):gsub("b*", "x"))
-- expect: 1=x, 2=y\t-a-b-c-\txaxcx\t3
print(("abc"):gsub("%w", {a = "1", c = false}))
-- expect: 1bc\t3
print(("abc"):gsub("%w", function(c) if c == "b" then return nil end return c:upper() end))
-- expect: AbC\t3
print(("hello world"):gsub("o", "0", 1), ("hello"):gsub("l", "L", 0), ("hello"):gsub("l", "L", -1))
-- expect: hell0 world\thello\thello\t0
for k, v in ("a=1, b=2"):gmatch("(%w)=(%w)") do io.write(k, v, ";") end print()
-- expect: a1;b2;
for at in ("abab"):gmatch("()b") do io.write(at, ";") end print()
-- expect: 2;4;
print(("key = value"):match("^(%w+)%s*=%s*(%w+)$"), ("abc"):match("()b()"), ("  x"):match("^%s*(.-)%s*$"))
-- expect: key\t2\tx
print(("aXb"):match("%u"), ("a\nb"):match("a.b") ~= nil, ("[x]"):match("[]]"), ("a-b"):match("[a%-]+"), ("^"):match("[%^]"))
-- expect: X\ttrue\t]\ta-\t^
print(("abc"):match("a(b)(c)"), ("aa"):match("(a)%1"), ("ab"):match("(a)%1"))
-- expect: b\ta\tnil
print(string.format("%5.1f|%-6d|%06d|%+d|% d|%#x|%e|%g", 3.14159, 42, -42, 7, 7, 255, 12345.678, math.pow(10, 20)))
-- expect:   3.1|42    |-00042|+7| 7|0xff|1.234568e+04|1e+20
print(string.format("%q", "a\"b\"\\"), string.format("%.3s|%5s|%-5s|", "abcdef", "ab", "ab"), string.format("%%"))
-- expect: "a\"b\"\\"\tabc|   ab|ab   |\t%
print(string.format("%i %u %c%c %o %X", -5, 7, 72, 105, 8, 48879), string.format("%s %s", nil, true), string.format("%d", 3.0))
-- expect: -5 7 Hi 10 BEEF\tnil true\t3
print(tonumber("  12  "), tonumber("0x"), tonumber("1 2"), tonumber("1e"), tonumber(".5"), tonumber("5e-1"), tonumber("-0x10"))
-- expect: 12\tnil\tnil\tnil\t0.5\t0.5\t-16
print(tonumber("9223372036854775807"), tonumber("9223372036854775808"), tonumber("zZ", 36), tonumber("12", 2), tonumber("", 10))
-- expect: 9223372036854775807\t9.2233720368548e+18\t1295\tnil\tnil
print(math.floor(-0.5), math.ceil(-0.5), math.floor(math.pow(10, 300)) == math.pow(10, 300), math.abs(-9223372036854775807 - 1))
-- expect: -1\t0\ttrue\t-9223372036854775808
print(math.min(1, 1.0), math.max(-1, -2.5, -0.5), math.clamp(5, 5, 5), math.clamp(2.5, 1, 2), math.pow(0, 0), math.pow(-2, 63))
-- expect: 1\t-0.5\t5\t2\t1\t-9223372036854775808
print(math.pow(10, 18), math.pow(10, 19) == math.pow(10, 19), math.log(8, 2), math.log(0) == -math.huge, math.sqrt(-1) ~= math.sqrt(-1))
-- expect: 1000000000000000000\ttrue\t3\ttrue\ttrue
print(math.random(7, 7), pcall(math.random, 9223372036854775807), math.random(-5, -5))
-- expect: 7\ttrue\t-5
print(select("#"), select("#", nil, nil), select(-1, 1, 2, 3), select(2, "a", "b", "c"))
-- expect: 0\t2\t3\tb\tc
print(next({}), next({5}), next({a = 1}, "a"), next({1, 2}, 1), rawget({5}, 1.0), rawset({}, 2, "x")[2])
-- expect: nil\t1\tnil\t2\t5\tx
print(table.concat({}, ","), table.concat({1}, ","), table.concat({1, 2.5, "x"}, ", ", 2), table.concat({1, 2, 3}, "", 3, 2) == "")
-- expect: \t1\t2.5, x\ttrue
local list = {1, 2, 3}
table.insert(list, 2, "x") table.insert(list, 5, "end")
print(table.concat(list, " "), table.remove(list, 1), table.remove(list), table.remove(list, #list + 1), table.concat(list, " "))
-- expect: 1 x 2 3 end\t1\tend\tnil\tx 2 3
print(table.unpack({1, nil, 3}, 1, 3), (table.unpack({}, 1, 3)), #table.pack(), table.pack().n)
-- expect: 1\tnil\t0\t0
local sorted = {3, 1.5, 2, -1, 1.5}
table.sort(sorted) print(table.concat(sorted, " "))
-- expect: -1 1.5 1.5 2 3
table.sort(sorted, function(a, b) return a > b end) print(table.concat(sorted, " "))
-- expect: 3 2 1.5 1.5 -1
local texts = {"b", "", "a\0b", "a", "B"}
table.sort(texts) print(#texts, texts[1] == "", texts[2], texts[3], texts[4] == "a\0b", texts[5])
-- expect: 5\ttrue\tB\ta\ttrue\tb
print(#table.keys({}), table.concat(table.keys({[3] = 1, [1] = 1, x = 1, [-1] = 1}), " "), table.concat(table.values({4, 5, z = 6}), " "))
-- expect: 0\t-1 1 3 x\t4 5 6
local inner = {}
local copy = table.clone({inner, k = inner})
print(copy[1] == inner, copy.k == inner, copy ~= table.clone(copy), table.extend({1}, {}) ~= nil, #table.extend({}, {1, 2}))
-- expect: true\ttrue\ttrue\ttrue\t2
print(("a,b,,c"):split(",")[3] == "", #(" a  b "):split(), #(",")
    :split(","), ("abc"):split("bc")[1], ("xyx"):strip("x"), ("  "):lstrip() == "", ("ab"):rstrip("b"))
-- expect: true\t2\t2\ta\ty\ttrue\ta
print(string.unpack("<i2 >i2 B z", string.pack("<i2 >i2 B z", -2, 258, 255, "end")))
-- expect: -2\t258\t255\tend\t10
print(string.unpack("f d n j J", string.pack("f d n j J", 0.5, -0.25, 2, -1, 5)))
-- expect: 0.5\t-0.25\t2\t-1\t5\t37
print(("%d"):rep(3, "|"), (""):rep(5) == "", ("x"):rep(1, "sep"), ("ab"):rep(2, ""))
-- expect: %d|%d|%d\ttrue\tx\tabab
print(pcall(error), pcall(error, nil), pcall(error, "m", 0), pcall(error, 5), select("#", pcall(error)))
-- expect: false\tfalse\tfalse\tfalse\t2
print(load("return 1 + 1")(), load("x ="), load("return ...") == nil, select(2, load("x = = 1", "named")))
-- expect: 2\tnil\ttrue\tnamed:1:5: expected expression
print(type(load("error('inside', 1)", "chunk")), pcall(load("error('inside')", "chunk")))
-- expect: function\tfalse\tchunk:1: inside
