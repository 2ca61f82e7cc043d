local function numbers(amount)
    local list = {}
    local seed = 42
    for i = 1, amount do
        seed = (seed * 421 + 54773) % 259200
        list[i] = seed
    end
    return list
end
local function quicksort(list, low, high)
    while low < high do
        local pivot = list[(low + high - (low + high) % 2) / 2]
        local i = low
        local j = high
        while i <= j do
            while list[i] < pivot do
                i = i + 1
            end
            while list[j] > pivot do
                j = j - 1
            end
            if i <= j then
                list[i], list[j] = list[j], list[i]
                i = i + 1
                j = j - 1
            end
        end
        quicksort(list, low, j)
        low = i
    end
end
local function descending(a, b)
    return a > b
end
local list = numbers(100000)
quicksort(list, 1, #list)
local again = numbers(60000)
table.sort(again, descending)
print(list[1], list[50000], list[100000], again[1], again[30000])
