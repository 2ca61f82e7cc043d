function fill(size)
    local stock = {}
    local order = []
    for i = 1, size
        stock["part" + i] = i % 100
        push(order, i * 3 % size)
    end
    return stock, order
end
function tally(stock, order)
    local sum = 0
    local longest = 0
    for name, amount in pairs(stock)
        sum += amount
        if #name > longest
            longest = #name
        end
    end
    for position, item in ipairs(order)
        sum += position % 7 * (item % 5)
    end
    for item in order
        sum -= item % 3
    end
    return sum + longest
end
stock, order = fill(20000)
result = 0
for round = 1, 20
    result += tally(stock, order)
end
print(result)
