@@ Small arithmetic of scenes and layouts.

@@ The upper bound is tested first.
function Vesper["clamp"](num, min, max)
    if num > max
        return max
    end
    if num < min
        return min
    end
    return num
end

function Vesper["findID"](tbl, id)
    for index, entry in ipairs(tbl)
        if entry["identifier"] == id
            return index
        end
    end
    return -1
end

@@ The bounds come in either order and count as inside.
function Vesper["between"](num, min, max)
    if min > max
        return num >= max and num <= min
    end
    return num >= min and num <= max
end

@@ What centres num2 in num.
function Vesper["middle"](num, num2)
    return num / 2 - num2 / 2
end

function Vesper["orbit"](x, y, cx, cy, angle)
    local radians = angle * 0.0174533
    local s = math["sin"](radians)
    local c = math["cos"](radians)
    return cx + (x - cx) * c - (y - cy) * s, cy + (x - cx) * s + (y - cy) * c
end

@@ The nearest multiple of the step; half-way goes up. A quotient above 2^22 has no room for the half.
function Vesper["round90"](number, step)
    if math["abs"](number / step) < 4194304
        return math["floor"](number / step + 0.5) * step
    end
    local size = math["abs"](step)
    local rest = number % size
    if rest < 0
        rest += size
    end
    if rest >= size - rest
        return number - rest + size
    end
    return number - rest
end

function Vesper["within"](number, range, target)
    if number - range >= target - range and number + range <= target + range
        return true, number < target
    end
    return false, false
end
