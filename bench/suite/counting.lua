local function count(rounds)
    local seed = 12345
    local counts = {}
    for i = 1, rounds do
        seed = (seed * 421 + 54773) % 259200
        local key = "item" .. seed % 1000
        counts[key] = (counts[key] or 0) + 1
    end
    local best = ""
    local most = 0
    for key, value in pairs(counts) do
        if value > most then
            best = key
            most = value
        end
    end
    return best .. " " .. most .. " " .. #table.keys(counts)
end
print(count(400000))
