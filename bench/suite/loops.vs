function run(rounds)
    local total = 0
    local outer = 0
    while outer < rounds
        for inner = 1, 1000
            if inner % 3 == 0 and outer % 2 == 0
                total += inner
            else
                total = total - outer
            end
        end
        outer += 1
    end
    return total
end
print(run(3000))
