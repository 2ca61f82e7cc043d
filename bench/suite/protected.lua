local function check(value)
    if value % 4 == 0 then
        error("refused " .. value, 0)
    end
    return value * 2
end
local function run(rounds)
    local sum = 0
    local refused = 0
    for i = 1, rounds do
        local ok, result = pcall(check, i)
        if ok then
            sum = sum + result
        else
            refused = refused + #result
        end
    end
    -- as 32 bits hold it
    return (sum + 2147483648) % 4294967296 - 2147483648 .. " " .. refused
end
print(run(30000), run(300001))
