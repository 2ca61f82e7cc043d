local function pair(a, b) return a, b end
print(pair(1), pair(1, 2, 3))        -- expect: 1\t1\t2
print((pair(1, 2)))                  -- expect: 1
local a, b, c = pair(1, 2)
print(a, b, c)                       -- expect: 1\t2\tnil
a, b = b, a
print(a, b)                          -- expect: 2\t1
local function none() end
print(none(), (none()))              -- expect: nil\tnil
local x, y = none()
print(x, y, #{none()})               -- expect: nil\tnil\t0
-- closures share their variable; each round of a loop has its own
local function counter()
    local count = 0
    return function() count = count + 1 return count end, function() return count end
end
local up, get = counter()
up() up()
print(up(), get())                   -- expect: 3\t3
local made = {}
for i = 1, 3 do
    local square = i * i
    made[i] = function() i = i + 10 square = square + 1 return i, square end
end
print(made[1](), made[1](), made[2]()) -- expect: 11\t21\t12\t5
local n = 0
local each = {}
while n < 2 do
    n = n + 1
    local kept = n
    each[n] = function() kept = kept + 1 return kept end
end
print(each[1](), each[1](), each[2]()) -- expect: 2\t3\t3
for key, value in pairs({x = 1, y = 2}) do each[key] = function() value = value * 2 return key .. value end end
print(each.x(), each.x(), each.y())  -- expect: x2\tx4\ty4
local function outer(parameter)
    local function middle()
        local function inner() parameter = parameter .. "!" return parameter end
        return inner()
    end
    return middle() .. parameter
end
print(outer("p"))                    -- expect: p!p!
-- a local function sees itself, also from within others
local function factorial(k)
    local function step() return factorial(k - 1) end
    return k < 2 and 1 or k * step()
end
print(factorial(20))                 -- expect: 2432902008176640000
local even, odd
function even(k) if k == 0 then return true end return odd(k - 1) end
function odd(k) if k == 0 then return false end return even(k - 1) end
print(even(10), odd(7), even(3))     -- expect: true\ttrue\tfalse
local shadow = 1
local shadow = shadow + 1
do_ = function(shadow) shadow = shadow + 1 return shadow end
print(do_(5), shadow)                -- expect: 6\t2
local object = {items = {}}
function object.items.add(value) object.items[1] = value end
function object:get(index) return self.items[index], self == object end
object.items.add("thing")
print(object:get(1))                 -- expect: thing\ttrue
print(("abc"):upper():rep(2), #("x"):rep(3)) -- expect: ABCABC\t3
print((function(v) return v * 2 end)(21))    -- expect: 42
local order = ""
local function mark(name, value) order = order .. name return value end
local target = {}
target[mark("k", 1)], target[mark("l", 2)] = mark("v", "first"), mark("w", "second"), mark("z")
print(order, target[1], target[2])   -- expect: vwzkl\tfirst\tsecond
local i = 1
i, target[i] = 2, "at two"
print(target[2])                     -- expect: at two
local function early(v)
    while true do
        for _, item in ipairs({1, 2, 3}) do
            if item == v then return "found " .. item end
        end
        if true then break end
    end
    return "none"
    local unreachable = 1
end
print(early(2), early(9))            -- expect: found 2\tnone
print(select("#"), select("#", nil, nil), select(2, "a", "b", "c"), select(-1, "a", "b"))
-- expect: 0\t2\tb\tb
local function deep(k) if k == 0 then return 0 end return 1 + deep(k - 1) end
print(deep(200), deep(5000))         -- expect: 200\t5000
local ok, message = pcall(function() local function endless() return 1 + endless() end return endless() end)
print(ok, message) -- expect: false\tfunctions.lua:88: Stack overflow: calls or expressions are nested too deeply
print(pcall(5))                      -- expect: false\tfunctions.lua:90: attempt to call a number value
print(pcall(pcall, error, "e"))      -- expect: true\tfalse\tfunctions.lua:91: e
print(pcall(function() return 1, nil, 3 end)) -- expect: true\t1\tnil\t3
local missing = {}
missing.method()                     -- error: attempt to call a nil value
