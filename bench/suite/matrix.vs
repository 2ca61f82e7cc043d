function makeMatrix(size, seed)
    local matrix = []
    for i = 1, size
        local row = []
        for j = 1, size
            push(row, (i * seed + j * 3) % 17)
        end
        push(matrix, row)
    end
    return matrix
end
function multiply(a, b, size)
    local product = []
    for i = 1, size
        local row = []
        local left = a[i]
        for j = 1, size
            local sum = 0
            for k = 1, size
                sum += left[k] * b[k][j]
            end
            push(row, sum)
        end
        push(product, row)
    end
    return product
end
size = 120
product = multiply(makeMatrix(size, 5), makeMatrix(size, 7), size)
trace = 0
for i = 1, size
    trace += product[i][i]
end
print(trace, product[3][5])
