local function makeMatrix(size, seed)
    local matrix = {}
    for i = 1, size do
        local row = {}
        for j = 1, size do
            row[j] = (i * seed + j * 3) % 17
        end
        matrix[i] = row
    end
    return matrix
end
local function multiply(a, b, size)
    local product = {}
    for i = 1, size do
        local row = {}
        local left = a[i]
        for j = 1, size do
            local sum = 0
            for k = 1, size do
                sum = sum + left[k] * b[k][j]
            end
            row[j] = sum
        end
        product[i] = row
    end
    return product
end
local size = 120
local product = multiply(makeMatrix(size, 5), makeMatrix(size, 7), size)
local trace = 0
for i = 1, size do
    trace = trace + product[i][i]
end
print(trace, product[3][5])
