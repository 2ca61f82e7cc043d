function numbers(amount)
    local list = []
    local seed = 42
    for i = 1, amount
        seed = (seed * 421 + 54773) % 259200
        push(list, seed)
    end
    return list
end
function quicksort(list, low, high)
    while low < high
        local pivot = list[(low + high) \ 2]
        local i = low
        local j = high
        while i <= j
            while list[i] < pivot
                i += 1
            end
            while list[j] > pivot
                j -= 1
            end
            if i <= j
                list[i], list[j] = list[j], list[i]
                i += 1
                j -= 1
            end
        end
        quicksort(list, low, j)
        low = i
    end
end
function descending(a, b)
    return a > b
end
list = numbers(100000)
quicksort(list, 1, #list)
again = numbers(60000)
table["sort"](again, descending)
print(list[1], list[50000], list[100000], again[1], again[30000])
