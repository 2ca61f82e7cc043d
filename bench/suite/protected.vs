function check(value)
    if value % 4 == 0
        error("refused " + value)
    end
    return value * 2
end
function run(rounds)
    local sum = 0
    local refused = 0
    for i = 1, rounds
        local ok, result = pcall(check, i)
        if ok
            sum += result
        else
            refused += #result
        end
    end
    return sum + " " + refused
end
print(run(30000), run(300001))
