def place(row, size):
    global solutions
    if row > size:
        solutions += 1
        return True
    for column in range(1, size + 1):
        rising = row + column
        falling = row - column + size
        if columns[column] == 0 and up[rising] == 0 and down[falling] == 0:
            columns[column] = 1
            up[rising] = 1
            down[falling] = 1
            place(row + 1, size)
            columns[column] = 0
            up[rising] = 0
            down[falling] = 0
    return False


columns = [0] * 21
up = [0] * 21
down = [0] * 21
solutions = 0
place(1, 8)
print(solutions)
