function place(row, size)
    if row > size
        solutions += 1
        return true
    end
    for column = 1, size
        local rising = row + column
        local falling = row - column + size
        if columns[column] == 0 and up[rising] == 0 and down[falling] == 0
            columns[column] = 1
            up[rising] = 1
            down[falling] = 1
            place(row + 1, size)
            columns[column] = 0
            up[rising] = 0
            down[falling] = 0
        end
    end
    return false
end
columns = []
up = []
down = []
solutions = 0
for i = 1, 20
    push(columns, 0)
    push(up, 0)
    push(down, 0)
end
place(1, 8)
print(solutions)
