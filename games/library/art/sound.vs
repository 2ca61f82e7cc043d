@@ What the games' sounds are made with: samples between -1 and 1 in arrays, mono. `folder` is where they are saved.

sin = math["sin"]
floor = math["floor"]
TURN = 6.2831853

function little(value, bytes)
    local text = ""
    for i = 1, bytes
        text += string["char"](value % 256)
        value = value \ 256
    end
    return text
end

@@ Samples between -1 and 1.
function saveSound(name, rate, samples)
    local parts = []
    local part = ""
    for i = 1, #samples
        local value = floor(math["max"](-1, math["min"](1, samples[i])) * 32000)
        if value < 0
            value += 65536
        end
        part += string["char"](value % 256, value \ 256)
        if #part > 4000
            push(parts, part)
            part = ""
        end
    end
    push(parts, part)
    local data = table["concat"](parts)
    local file = io["open"](folder + "/" + name + ".wav", "w")
    file["write"](file, "RIFF" + little(#data + 36, 4) + "WAVEfmt " + little(16, 4) + little(1, 2) + little(1, 2) + little(rate, 4) + little(rate * 2, 4) + little(2, 2) + little(16, 2) + "data" + little(#data, 4) + data)
    file["close"](file)
end

function silence(count)
    local samples = []
    for i = 1, count
        samples[i] = 0.0
    end
    return samples
end

@@ A plucked or struck tone that dies away, wrapped round the end of the samples.
function tone(samples, rate, start, pitch, long, loud, overtones)
    local count = #samples
    local first = floor(start * rate)
    local length = floor(long * rate)
    for i = 0, length - 1
        local t = i / rate
        local fade = (1 - i / length) * (1 - i / length) * math["min"](1, t * 60)
        local angle = t * pitch * TURN
        local value = sin(angle) + sin(angle * 2.0) * 0.32 * overtones + sin(angle * 3.01) * 0.16 * overtones
        local at = (first + i) % count + 1
        samples[at] += value * fade * loud
    end
end

@@ Breath of wind or sea: noise through a slow filter, swelling so often in a round.
function breath(samples, rate, loud, dull, swells)
    local count = #samples
    local value = 0.0
    local tail = count \ 6
    local noises = []
    for i = 1, count + tail
        value += (random() * 2 - 1 - value) * dull
        push(noises, value)
    end
    for i = 1, count
        local swell = 0.6 + 0.4 * sin(i / count * TURN * swells)
        local noise = noises[i]
        if i <= tail
            noise = noise * (i / tail) + noises[count + i] * (1 - i / tail)
        end
        samples[i] += noise * loud * swell
    end
end

SOUND_RATE = 22050

function rustle(long, loud, dull)
    local samples = silence(floor(SOUND_RATE * long))
    local value = 0.0
    for i = 1, #samples
        local t = i / #samples
        value += (random() * 2 - 1 - value) * dull
        samples[i] = value * loud * sin(t * 3.14159) * (0.5 + 0.5 * sin(t * 17))
    end
    return samples
end

function struck(long, strikes)
    local samples = silence(floor(SOUND_RATE * long))
    for i, strike in ipairs(strikes)
        tone(samples, SOUND_RATE, strike[1], strike[2], strike[3], strike[4], strike[5])
    end
    return samples
end

