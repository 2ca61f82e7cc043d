local function thrower(value, level)
    error(value, level)              -- line 2
end
local function caller(value, level)
    thrower(value, level)            -- line 5
    return "not reached"
end
print(pcall(caller, "text"))         -- expect: false\terrors.lua:2: text
print(pcall(caller, "text", 2))      -- expect: false\terrors.lua:5: text
print(pcall(caller, "text", 0))      -- expect: false\ttext
print(pcall(caller, nil))            -- expect: false\tnil
print(pcall(caller, 42))             -- expect: false\t42
local marker = {code = 7}
local ok, value = pcall(caller, marker)
print(ok, value == marker, value.code) -- expect: false\ttrue\t7
print(pcall(error))                  -- expect: false\tnil
print(pcall(assert, false))          -- expect: false\terrors.lua:17: assertion failed!
print(pcall(assert, nil, "why"))     -- expect: false\terrors.lua:18: why
print(pcall(assert, 1, "why", 2))    -- expect: true\t1\twhy\t2
local first, second = pcall(function()
    local inner, message = pcall(error, "inner", 0)
    error(message .. " and outer", 0)
end)
print(first, second)                 -- expect: false\tinner and outer
-- an error leaves variables and tables as they were when it came
local list = {1, 2, 3}
local reached = 0
pcall(function()
    for i = 1, 3 do
        reached = i
        list[i] = list[i] + (i == 2 and nil or 10)
        if i == 2 then error("stop") end
    end
end)
print(reached, list[1], list[2], list[3]) -- expect: 2\t11\t12\t3
print(pcall(string.rep))
-- expect: false\terrors.lua:36: string.rep expects between 2 and 3 arguments
print(pcall(string.rep, "x", {}))
-- expect: false\terrors.lua:38: string.rep expects an integer as argument 2
print(pcall(table.sort, {3, 1, 2}, function(a, b) error("in the comparator", 0) end))
-- expect: false\tin the comparator
print(select("#", pcall(error)))     -- expect: 2
local results = {pcall(function() return end)}
print(#results, results[1])          -- expect: 1\ttrue
print(load("return 1 +"))            -- expect: nil\t<string>:1:11: expected expression
print(load("return ...", "chunk"))   -- expect: nil\tchunk:1:8: expected expression
print(load("x = 5 return x * 2")(), x) -- expect: 10\t5
print(pcall(load("local a = {}\nlocal b = a.c.d", "later"))) -- expect: false\tlater:2: attempt to index a nil value
error({})                            -- error: (error value of kind table)
