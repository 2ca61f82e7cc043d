@@ What a ray that meets nothing sees. The scene gives it the colour of fog; here it becomes a night sky, which begins
@@ with that colour at the horizon, and below the horizon, where still water mirrors all, the same sky upside down.
@@ Angles in radians; the moon stands in the north.

MOON_AT = -1.5
MOON_UP = 0.36

function skySource()
    local lines = [
        "if abs(r - fogR) + abs(g - fogG) + abs(b - fogB) < 0.004 then",
        "local u = (x * 2 / width - 1) * wide",
        "local v = (y * 2 / height - 1) * wide * height / width",
        "local ahead = cosTilt - v * sinTilt",
        "local up = -(sinTilt + v * cosTilt)",
        "local yaw = mod(turn + atan2(u, ahead) + 12.566371, 6.2831853)",
        "local rise = atan2(up, sqrt(ahead * ahead + u * u))",
        "local dim = 1",
        "if rise < 0 then",
        "dim = 0.8",
        "yaw = yaw + sin(rise * 190 + clock * 1.7) * 0.006",
        "rise = -rise * (1 + 0.02 * sin(rise * 120 - clock * 2))",
        "end",
        "local high = clamp(rise / 0.9, 0, 1)",
        "local low = 1 - (1 - high) * (1 - high)",
        "r = mix(fogR, topR, low)",
        "g = mix(fogG, topG, low)",
        "b = mix(fogB, topB, low)",
        "local glow = exp(-rise * 4.5) * smoothstep(0, 0.1, rise) * dawn * 1.5",
        "r = r + glow * 0.46",
        "g = g + glow * 0.2",
        "b = b + glow * 0.08",
        "local i = floor(yaw * 35.014)",
        "local j = floor(rise * 35.014)",
        "local pick = fract(sin(i * 12.9898 + j * 78.233) * 437.585)",
        "if pick > 0.82 then",
        "local offX = yaw * 35.014 - i - 0.3 - 0.4 * fract(pick * 71.7)",
        "local offY = rise * 35.014 - j - 0.3 - 0.4 * fract(pick * 39.3)",
        "local far = sqrt(offX * offX + offY * offY)",
        "local star = clamp(1 - far * (13 - 8 * fract(pick * 17.3)), 0, 1) * smoothstep(0, 0.3, rise)",
        "star = star * (0.6 + 0.4 * sin(clock * (0.5 + fract(pick * 5.1)) + pick * 90)) * (1 - dawn * 0.8)",
        "r = r + star * 0.8",
        "g = g + star * 0.86",
        "b = b + star",
        "end",
        "local moonX = yaw - moonAt",
        "if moonX > 3.14159 then moonX = moonX - 6.2831853 end",
        "local moonY = rise - moonUp",
        "local away = sqrt(moonX * moonX + moonY * moonY)",
        "local mark = 0.86 + 0.14 * sin(moonX * 96 + 1.4) * sin(moonY * 88 + moonX * 40)",
        "local disc = smoothstep(0.06, 0.052, away) * mark",
        "local halo = exp(-away * 6) * 0.32",
        "r = mix(r + halo * 0.6, 0.93, disc)",
        "g = mix(g + halo * 0.72, 0.93, disc)",
        "b = mix(b + halo * 0.9, 0.85, disc)",
        "local bandU = yaw * 3 + clock * 0.01",
        "local bandV = rise * 16",
        "local band = sin(bandU + 1.7 * sin(bandV * 0.5 + yaw)) * sin(bandV + 1.3 * sin(yaw * 5))",
        "local veil = smoothstep(0.35, 1, band) * 0.35 * smoothstep(0, 0.12, rise) * smoothstep(1, 0.5, rise)",
        "r = mix(r, fogR * 1.5 + 0.02 + dawn * 0.2, veil)",
        "g = mix(g, fogG * 1.5 + 0.02 + dawn * 0.1, veil)",
        "b = mix(b, fogB * 1.5 + 0.03, veil)",
        "local near = dim",
        "if dim < 1 then near = 0.8 * smoothstep(0.015, 0.1, rise) end",
        "local kept = 1 - smoothstep(0.015, 0.1, rise)",
        "if dim == 1 then kept = 0 end",
        "r = r * near + fogR * kept",
        "g = g * near + fogG * kept",
        "b = b * near + fogB * kept",
        "end"
    ]
    return table["concat"](lines, "\n")
end

skyShader = Plush["compileShader"](skySource())
topColours = [[4, 8, 22], [44, 62, 108]]

@@ Over `image`, as the player sees it. `dawn` is 0 by night and 1 when the sun is about to rise.
function drawSky(image, dawn)
    local fog = fogNow
    local uniforms = {fogR = fog[1] / 255, fogG = fog[2] / 255, fogB = fog[3] / 255}
    for i, name in ipairs(["topR", "topG", "topB"])
        uniforms[name] = between(topColours[1][i], topColours[2][i], dawn) / 255
    end
    uniforms["wide"] = VIEW_WIDE
    uniforms["turn"] = playerTurn
    uniforms["cosTilt"] = math["cos"](playerTilt)
    uniforms["sinTilt"] = math["sin"](playerTilt)
    uniforms["clock"] = frame / 30
    uniforms["dawn"] = dawn
    uniforms["moonAt"] = MOON_AT + 6.2831853
    uniforms["moonUp"] = MOON_UP
    Plush["shader"](image, skyShader, uniforms, 1, true)
end
