local function show(list) return table.concat(list, " ") end
local list = {1, 2, 3}
table.insert(list, 4) table.insert(list, 1, 0) table.insert(list, 3, "x")
print(show(list))                    -- expect: 0 1 x 2 3 4
print(table.remove(list), table.remove(list, 1), table.remove(list, 2), show(list)) -- expect: 4\t0\tx\t1 2 3
print(table.remove({}), table.remove(list, 4), #list) -- expect: nil\tnil\t3
print(table.concat({1, "a", 2.5}), table.concat({1, 2, 3}, ", ", 2, 3), table.concat({}) == "") -- expect: 1a2.5\t2, 3\ttrue
local words = {"pear", "apple", "fig"}
table.sort(words)
print(show(words))                   -- expect: apple fig pear
table.sort(words, function(a, b) return #a < #b end)
print(show(words))                   -- expect: fig pear apple
local many = {}
for i = 1, 500 do many[i] = i * 7919 % 503 end
table.sort(many, function(a, b) return true end)
table.sort(many, function(a, b) return a > b end)
local sorted = true
for i = 2, #many do sorted = sorted and many[i - 1] >= many[i] end
print(sorted, #many)                 -- expect: true\t500
local shrinking = {5, 4, 3, 2, 1}
table.sort(shrinking, function(a, b) table.clear(shrinking) return a < b end)
print(show(shrinking))               -- expect: 1 2 3 4 5
print(pcall(table.sort, {1, "a"}))
-- expect: false\ttable_library.lua:23: ordered comparisons require matching numbers or strings
local packed = table.pack(1, nil, 3)
print(packed.n, packed[1], packed[2], packed[3]) -- expect: 3\t1\tnil\t3
print(table.unpack({1, 2, 3}), table.unpack({1, 2, 3}, 2), (table.unpack({}, 1, 2))) -- expect: 1\t2\tnil
print(table.unpack({"a", "b"}))      -- expect: a\tb
local map = {x = 1, 5, y = 2, [0] = 3}
print(show(table.keys(map)), show(table.values(map))) -- expect: 0 1 x y\t3 5 1 2
local copy = table.clone(map)
copy.x = 9
print(map.x, copy.x, copy.y, #copy)  -- expect: 1\t9\t2\t1
print(show(table.extend({1, 2}, {3, 4})), #table.extend(list, list)) -- expect: 1 2 3 4\t6
table.clear(map)
print(next(map), #map)               -- expect: nil\t0
print(pcall(table.concat, {1, {}, 3}))
-- expect: false\ttable_library.lua:37: table.concat: item 2 is not a string or number
print(pcall(table.insert, {}, 5, 1)) -- expect: false\ttable_library.lua:39: table.insert: the position is out of range
print(pcall(table.unpack, {}, 1, 100000000)) -- expect: false\ttable_library.lua:40: table.unpack: too many values
table.keys(5)                        -- error: table.keys expects a table as argument 1
