local t = {}
t[1] = "a" t[3] = "c"
print(#t, t[2], t[3])                -- expect: 1\tnil\tc
t[2] = "b"
print(#t)                            -- expect: 3
t[2] = nil
print(#t)                            -- expect: 1
local sparse = {}
sparse[100] = 1
print(#sparse, sparse[100])          -- expect: 0\t1
sparse["x"] = nil
print(sparse.x)                      -- expect: nil
-- an entry that the growing array part reaches is not shadowed
local growing = {}
growing[70] = "seventy"
growing[66] = "sixty-six"
for i = 1, 65 do growing[i] = i end
print(#growing, growing[66], growing[70]) -- expect: 66\tsixty-six\tseventy
for i = 67, 69 do growing[i] = i end
print(#growing, growing[70])         -- expect: 70\tseventy
growing[70] = nil
print(#growing, growing[70])         -- expect: 69\tnil
print(t[1.0], t[nil], t[{}], t[0.5]) -- expect: a\tnil\tnil\tnil
t[2.0] = "two" t[true] = "yes" t[-1] = "minus" t["2"] = "text"
print(t[2], t[true], t[-1], t["2"])  -- expect: two\tyes\tminus\ttext
for key, value in pairs(t) do print(key, value) end
-- expect: -1\tminus
-- expect: 1\ta
-- expect: 2\ttwo
-- expect: 3\tc
-- expect: 2\ttext
-- expect: true\tyes
local mixed = {10, x = 1, [30] = 3, 20; y = {z = 2}, ["a b"] = 5,}
print(#mixed, mixed.x, mixed[30], mixed.y.z, mixed["a b"]) -- expect: 2\t1\t3\t2\t5
local function three() return 1, 2, 3 end
print(#{three()}, #{three(), three()}, #{(three())}) -- expect: 3\t4\t1
-- keys that go during a walk are left out, new ones are not seen
local walked = {a = 1, b = 2, c = 3, 1, 2, 3}
for key in pairs(walked) do
    print(key)
    walked[2] = nil walked.b = nil walked.d = 4 walked[4] = 4
end
-- expect: 1
-- expect: 3
-- expect: a
-- expect: c
local key, value = next({})
print(key, value, next({5}), next({5}, 1)) -- expect: nil\tnil\t1\tnil
local visited = ""
local store = {x = 1, y = 2, 7, [0] = 3}
local at, item = next(store)
while at ~= nil do
    visited = visited .. tostring(at) .. "=" .. item .. " "
    store[at] = nil
    at, item = next(store, at)
end
print(visited)                       -- expect: 0=3 1=7 x=1 y=2 
local cycle = {}
cycle.self = cycle
print(cycle.self.self == cycle, cycle == {}) -- expect: true\tfalse
local list = {}
for i = 1, 200 do list[i] = i end
for i = 200, 1, -1 do list[i] = nil end
print(#list)                         -- expect: 0
for i = 1, 100 do list["k" .. i] = i end
for i = 1, 100 do list["k" .. i] = nil end
for i = 1, 10 do list["n" .. i] = i end
local count = 0
for _ in pairs(list) do count = count + 1 end
print(count)                         -- expect: 10
print(pcall(function() t[{}] = 1 end))
-- expect: false\ttables.lua:71: table index must be a number, string, or boolean
print(pcall(function() t[0.5] = 1 end))
-- expect: false\ttables.lua:73: table index must be a number, string, or boolean
print(pcall(function() local n = 5 n.x = 1 end))
-- expect: false\ttables.lua:75: attempt to assign into a number value
print(pcall(function() return missing.x end))
-- expect: false\ttables.lua:77: attempt to index a nil value
print(pcall(function() return ("text").nothing end))
-- expect: false\ttables.lua:79: string indexing only supports library methods
nothing.x = 1 -- error: attempt to assign into a nil value
