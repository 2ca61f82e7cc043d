local function sieve(limit)
    local composite = {}
    for i = 1, limit do
        composite[i] = false
    end
    local count = 0
    for i = 2, limit do
        if not composite[i] then
            count = count + 1
            local multiple = i + i
            while multiple <= limit do
                composite[multiple] = true
                multiple = multiple + i
            end
        end
    end
    return count
end
print(sieve(1000000))
