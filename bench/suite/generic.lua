local function fill(size)
    local stock = {}
    local order = {}
    for i = 1, size do
        stock["part" .. i] = i % 100
        order[#order + 1] = i * 3 % size
    end
    return stock, order
end
local function tally(stock, order)
    local sum = 0
    local longest = 0
    for name, amount in pairs(stock) do
        sum = sum + amount
        if #name > longest then
            longest = #name
        end
    end
    for position, item in ipairs(order) do
        sum = sum + position % 7 * (item % 5)
    end
    for _, item in ipairs(order) do
        sum = sum - item % 3
    end
    return sum + longest
end
local stock, order = fill(20000)
local result = 0
for round = 1, 20 do
    result = result + tally(stock, order)
end
print(result)
