local function run(rounds)
    local total = 0
    local outer = 0
    while outer < rounds do
        for inner = 1, 1000 do
            if inner % 3 == 0 and outer % 2 == 0 then
                total = total + inner
            else
                total = total - outer
            end
        end
        outer = outer + 1
    end
    return total
end
-- as 32 bits hold it
local result = (run(3000) + 2147483648) % 4294967296
if result < 0 then result = result + 4294967296 end
print(result - 2147483648)
