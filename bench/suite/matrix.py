def make_matrix(size, seed):
    matrix = []
    for i in range(1, size + 1):
        row = []
        for j in range(1, size + 1):
            row.append((i * seed + j * 3) % 17)
        matrix.append(row)
    return matrix


def multiply(a, b, size):
    product = []
    for i in range(size):
        row = []
        left = a[i]
        for j in range(size):
            total = 0
            for k in range(size):
                total += left[k] * b[k][j]
            row.append(total)
        product.append(row)
    return product


size = 120
product = multiply(make_matrix(size, 5), make_matrix(size, 7), size)
trace = 0
for i in range(size):
    trace += product[i][i]
print(trace, product[2][4], sep="\t")
