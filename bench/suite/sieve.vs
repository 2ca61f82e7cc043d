function sieve(limit)
    local composite = []
    reserve(composite, limit)
    for i = 1, limit
        push(composite, false)
    end
    local count = 0
    for i = 2, limit
        if not composite[i]
            count += 1
            local multiple = i + i
            while multiple <= limit
                composite[multiple] = true
                multiple += i
            end
        end
    end
    return count
end
print(sieve(1000000))
