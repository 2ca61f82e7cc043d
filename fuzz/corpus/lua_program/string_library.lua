print(string.len("a\0b"), ("aBc"):upper(), ("AbC"):lower(), ("abc"):reverse()) -- expect: 3\tABC\tabc\tcba
print(("hello"):sub(2, -2), ("hello"):sub(-3), ("hello"):sub(0), ("hello"):sub(4, 2) == "")
-- expect: ell\tllo\thello\ttrue
print(("abc"):byte(), ("abc"):byte(-1), ("abc"):byte(1, -1)) -- expect: 97\t99\t97\t98\t99
print(#("ab"):rep(0), string.char() == "", string.char(72, 105), ("abc"):byte(9))
-- expect: 0\ttrue\tHi
print(("ab"):rep(3), ("ab"):rep(3, "-"), #("x"):rep(-5)) -- expect: ababab\tab-ab-ab\t0
print("[" .. ("  a b \n"):strip() .. "]", "[" .. ("  a "):lstrip() .. "]", "[" .. ("  a "):rstrip() .. "]")
-- expect: [a b]\t[a ]\t[  a]
print(("xxaxx"):strip("x"), ("   "):strip() == "", ("abc"):contains("bc"), ("abc"):contains("."))
-- expect: a\ttrue\ttrue\tfalse
print(("abc"):startswith("ab"), ("abc"):startswith("b"), ("abc"):endswith("bc"), ("abc"):endswith(""))
-- expect: true\tfalse\ttrue\ttrue
print(table.concat((" a  b c "):split(), "|"), table.concat(("a,,b,"):split(","), "|"), #(""):split(), #(""):split(","))
-- expect: a|b|c\ta||b|\t0\t1
print(string.format("%5d|%-5s|%05.1f|%x|%c|%%|%s", 42, "ab", 3.14159, 255, 65, true))
-- expect:   42|ab   |003.1|ff|A|%|true
print(string.format("%g %i %u %X %q", 0.5, -3.0, 7, 3054, "a b")) -- expect: 0.5 -3 7 BEE "a b"
print(string.unpack("<i4 s2 z d", string.pack("<i4 s2 z d", -2, "abc", "z", 0.5)))
-- expect: -2\tabc\tz\t0.5\t20
print(string.unpack(">I2 b <h", "\0" .. string.char(1, 255, 254, 255))) -- expect: 1\t-1\t-2\t6
print(string.pack(">c3 x B", "a", 65) == "a\0\0\0A", string.unpack("c1", "abc", -1)) -- expect: true\tc\t4
local string_upper = string.upper
string.upper = nil
print(("still"):upper(), string.upper) -- expect: STILL\tnil
string.upper = string_upper
for _, call in ipairs({
    function() return ("x"):rep(300000000) end, function() return string.char(256) end,
    function() return string.format("%d", 0.5) end, function() return string.format("%d") end,
    function() return string.format("%y", 1) end, function() return ("a"):split("") end,
    function() return string.pack("b", 200) end, function() return string.unpack("i4", "abc") end,
    function() return string.pack("i9", 1) end, function() return string.len(5) end,
}) do
    local _, message = pcall(call)
    print(message:sub(24))
end
-- expect: the text is too large
-- expect: string.char expects a byte as argument 1
-- expect: string.format expects an integer as argument 2
-- expect: string.format: missing argument for format specifier %d
-- expect: string.format: unsupported specifier %y
-- expect: string.split: the separator is empty
-- expect: string.pack: an integer does not fit its size
-- expect: string.unpack: the text is too short
-- expect: string.pack: the size of an integer is out of range
-- expect: string.len expects a string as argument 1
