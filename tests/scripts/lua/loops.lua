local text = ""
for i = 1, 3 do text = text .. i end
for i = 3, 1, -1 do text = text .. i end
for i = 1, 0 do text = text .. "never" end
for i = 1, 2, 0.5 do text = text .. " " .. i end
for i = 2.0, 1, -0.5 do text = text .. " " .. i end
for i = 1, 2.9 do text = text .. " " .. i end
for i = 3, 1.5, -1 do text = text .. " " .. i end
print(text)                          -- expect: 123321 1 1.5 2 2 1.5 1 1 2 3 2
local count = 0
for i = 9223372036854775806, 9223372036854775807 do count = count + 1 end
for i = -9223372036854775807, -math.huge, -1 do count = count + 1 end
for i = 1, math.huge do if i > 5 then break end count = count + 1 end
for i = 1, -math.huge do count = count + 100 end
for i = 1, math.huge - math.huge do count = count + 100 end
print(count)                         -- expect: 9
for i = 1, 3 do
    local seen = i
    i = i * 10
    text = seen .. " " .. i
end
print(text)                          -- expect: 3 30
local left = 3
local function countdown()
    if left > 0 then
        left = left - 1
        return left, "left"
    end
end
for value, word in countdown do print(value, word) end
-- expect: 2\tleft
-- expect: 1\tleft
-- expect: 0\tleft
for word in ("one two"):gmatch("%a+") do print(word) end
-- expect: one
-- expect: two
for i, item in ipairs({"a", "b", nil, "d"}) do print(i, item) end
-- expect: 1\ta
-- expect: 2\tb
for a, b, c in pairs({x = 1}) do print(a, b, c) end -- expect: x\t1\tnil
local k = 0
while true do
    k = k + 1
    if k % 2 == 0 then
        if k > 6 then break end
    elseif k == 5 then
        k = k + 1
    else
        count = count + k
    end
end
print(k, count)                      -- expect: 8\t20
for _, wrong in ipairs({
    function() for i = "1", 2 do end end, function() for i = 1, nil do end end,
    function() for i = 1, 2, 0 do end end, function() for i in {} do end end,
    function() for i in nil do end end,
}) do print(pcall(wrong)) end
-- expect: false\tloops.lua:54: numeric for loop expects numeric bounds
-- expect: false\tloops.lua:54: numeric for loop expects numeric bounds
-- expect: false\tloops.lua:55: numeric for step cannot be zero
-- expect: false\tloops.lua:55: generic for loop expects an iterator
-- expect: false\tloops.lua:56: generic for loop expects an iterator
