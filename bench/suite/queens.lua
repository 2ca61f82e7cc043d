local columns, up, down = {}, {}, {}
local solutions = 0
local function place(row, size)
    if row > size then
        solutions = solutions + 1
        return true
    end
    for column = 1, size do
        local rising = row + column
        local falling = row - column + size
        if columns[column] == 0 and up[rising] == 0 and down[falling] == 0 then
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
for i = 1, 20 do
    columns[i] = 0
    up[i] = 0
    down[i] = 0
end
place(1, 8)
print(solutions)
