print(7.0 % 2.5, -7 % 3, 7 % -3)     -- expect: 2\t-1\t1
print(1 / 2, 4 / 2, 1.5 + 1.5)       -- expect: 0.5\t2\t3
print(9223372036854775807 + 1)       -- expect: -9223372036854775808
print(-9223372036854775807 - 2, 4611686018427387904 * 2)
-- expect: 9223372036854775807\t-9223372036854775808
local smallest = -9223372036854775807 - 1
print(smallest % -1, -smallest == smallest, smallest / -1) -- expect: 0\ttrue\t9.2233720368548e+18
print(0.1 + 0.2, 2 * -3.0, 10 - 0.5) -- expect: 0.3\t-6\t9.5
print(2 + 3 * 4 - 8 / 2, (2 + 3) * 4, - 2 * 3) -- expect: 10\t20\t-6
print(1 + 2 .. 3 + 4, 2 .. 3)        -- expect: 37\t23
print(1 == 1.0, 0.5 < 1, 9007199254740993 == 9007199254740992.0) -- expect: true\ttrue\tfalse
print(9007199254740993 > 9007199254740992.0, 1 < 1 / 0.3)  -- expect: true\ttrue
local huge = math.huge
local none = huge - huge
print(huge, -huge, none == none, none < 1, not (none < 1)) -- expect: inf\t-inf\tfalse\tfalse\ttrue
print("a" < "b", "a" < "B", "" < "a", "a\0b" > "a")  -- expect: true\tfalse\ttrue\ttrue
print(not 1 == 2, not nil, -(-3))    -- expect: false\ttrue\t3
print(1 and 2, nil and 1, false or "x", nil or false, 1 and nil or 3)
-- expect: 2\tnil\tx\tfalse\t3
print(nil .. "x" .. 1.5 .. true)     -- expect: nilx1.5true
print(#"four", #{1, 2, nil, 4})      -- expect: 4\t2
for _, operation in ipairs({
    function() return "10" + 1 end, function() return {} - 1 end, function() return nil * 1 end,
    function() return 1 / 0 end, function() return 1 % 0.0 end, function() return true / 1 end,
    function() return "a" % 1 end, function() return -"1" end, function() return #5 end,
    function() return 1 < "2" end, function() return {} <= {} end, function() return nil > 1 end,
}) do
    local _, message = pcall(operation)
    print(message)
end
-- expect: arithmetic.lua:23: operator '+' expects numbers
-- expect: arithmetic.lua:23: operator '-' expects numbers
-- expect: arithmetic.lua:23: operator '*' expects numbers
-- expect: arithmetic.lua:24: division by zero
-- expect: arithmetic.lua:24: modulo by zero
-- expect: arithmetic.lua:24: operator '/' expects numbers
-- expect: arithmetic.lua:25: operator '%' expects numbers
-- expect: arithmetic.lua:25: unary '-' expects a number
-- expect: arithmetic.lua:25: length operator expects a string or table
-- expect: arithmetic.lua:26: ordered comparisons require matching numbers or strings
-- expect: arithmetic.lua:26: ordered comparisons require matching numbers or strings
-- expect: arithmetic.lua:26: ordered comparisons require matching numbers or strings
