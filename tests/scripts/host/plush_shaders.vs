p = Plush
function picture(r, g, b, a)
    image = p["createImage"](2, 2, r, g, b, a)
    p["setPixel"](image, 1, 0, 200, 100, 50, 0)
    return image
end
function show(image)
    print(p["getPixel"](image, 0, 0), p["getPixel"](image, 1, 0))
end
function modified(process, r, g, b, a)
    image = picture(200, 100, 50, 255)
    print(p["modifyImage"](image, process, r, g, b, a))
    show(image)
end

@@ The built-in processors on an opaque and on a clear pixel.
modified(VESPER_GREYSCALE)              @@ expect: not
@@ expect: 84\t84\t84\t255\t200\t100\t50\t0
modified(VESPER_INACTIVE, 0.0, 0.0, 0.0, 0.0)           @@ expect: not
@@ expect: 142\t92\t67\t255\t200\t100\t50\t0
modified(VESPER_AETHER_INVERT)          @@ expect: not
@@ expect: 0\t0\t0\t0\t0\t0\t0\t255
modified(VESPER_COLOUR_INVERT)          @@ expect: not
@@ expect: 54\t155\t205\t255\t54\t155\t205\t0
modified(VESPER_COLOUR_FILL, 255, 0, 0)                 @@ expect: not
@@ expect: 255\t0\t0\t255\t255\t0\t0\t0
modified(VESPER_AETHER_CLEANUP)         @@ expect: not
@@ expect: 200\t100\t50\t255\t200\t100\t50\t255
modified(VESPER_AETHER_FILL, 1, 2, 300) @@ expect: not
@@ expect: 200\t100\t50\t255\t1\t2\t255\t255
modified(VESPER_AETHER_SET)             @@ expect: not
@@ expect: 200\t100\t50\t255\t200\t100\t50\t0
modified("a = 0.5; r = x / width")      @@ expect: not
@@ expect: 0\t100\t50\t127\t127\t100\t50\t127

@@ Into a new image, which the shader sees in the old one's coordinates.
image = picture(200, 100, 50, 255)
large = p["shader"](image, "g = x * 0.5; b = sampleR(x + 1, y)", not, 2)
print(p["imageSize"](large))            @@ expect: 4\t4
print(p["getPixel"](large, 3, 0))       @@ expect: 200\t191\t200\t0
print(p["getPixel"](large, 1, 3))       @@ expect: 200\t63\t200\t255
print(p["imageSize"](p["shader"](image, "a = 1", {}, 0.01)))    @@ expect: 1\t1
print(p["shader"](image, "r = level", {level = 0.25}, 1, true)) @@ expect: not
show(image)                             @@ expect: 63\t100\t50\t255\t63\t100\t50\t0
show(p["shader"](image, "local nothing = r"))   @@ expect: 63\t100\t50\t255\t63\t100\t50\t0

@@ Compiled shaders.
shader = p["compileShader"]("g = level; b = other + level")
print(p["shaderSource"](shader), toString(p["shaderUniforms"](shader)))     @@ expect: g = level; b = other + level\t[level, other]
print(toString(p["shaderUniforms"](VESPER_AETHER_FILL)), toString(p["shaderUniforms"]("r = 1")))    @@ expect: [tr, tg, tb]\t[]
p["shader"](image, shader, {level = 1, other = 0}, 1, true)
show(image)                             @@ expect: 63\t255\t255\t255\t63\t255\t255\t0
print(pcall(p["shader"], image, shader, {level = 1}))   @@ expect: false\tPlush.shader: shader uses uniform 'other' which was not supplied
print(p["killShader"](shader))          @@ expect: not
print(pcall(p["killShader"], shader))   @@ expect: false\tPlush.killShader: shader must be a live compiled shader
print(pcall(p["shaderSource"], shader)) @@ expect: false\tPlush.shaderSource: shader must be a live compiled shader
print(pcall(p["shaderUniforms"], shader))               @@ expect: false\tPlush.shaderUniforms: shader must be a live compiled shader
print(pcall(p["modifyImage"], image, shader))           @@ expect: false\tPlush.modifyImage: process must be a live compiled shader

@@ A function whose body is a shader is compiled; its parameters name the pixel.
function tint(red, green, blue, alpha, px, py, u)
    if alpha > 0 and not (px > 5)
        red = u["level"]   @@ a comment
        blue = mix(blue, 1, 0.5)
    end
end
image = picture(200, 100, 50, 255)
p["shader"](image, tint, {level = 0.5}, 1, true)
show(image)                             @@ expect: 127\t100\t152\t255\t200\t100\t50\t0
print(toString(p["shaderUniforms"](tint)))      @@ expect: [level]
shader = p["compileShader"](tint)
print(p["shaderSource"](shader)["find"]("mix", 1) != not)       @@ expect: true

@@ One that is not is called for each pixel and gives up to four channels.
calls = 0
function swap(r, g, b, a, x, y, u)
    calls += 1
    if a == 0
        return not, not, not, 1
    end
    return b, not, r + u["more"] + x + y
end
image = picture(200, 100, 50, 255)
p["shader"](image, swap, {more = 0.1}, 1, true)
show(image)                             @@ expect: 50\t100\t225\t255\t200\t100\t50\t255
print(calls, p["getPixel"](image, 0, 1))        @@ expect: 4\t50\t100\t255\t255
print(pcall(p["shader"], image, math["abs"]))           @@ expect: false\tmath['abs'](x) requires exactly 1 argument
print(pcall(p["compileShader"], swap))  @@ expect: false\tPlush.compileShader: the function body could not be compiled as a shader
print(pcall(p["compileShader"], print)) @@ expect: false\tPlush.compileShader: the function body is not available
function late(r)
    return r +
end
print(pcall(p["compileShader"], late))  @@ expect: false\tPlush.compileShader: shader line 1: unexpected 'end of line' in expression
print(pcall(p["compileShader"], late))  @@ expect: false\tPlush.compileShader: the function body could not be compiled as a shader

@@ A call that fails leaves the picture alone, and one that kills it is found out.
function failing(r, g, b, a, x)
    if x == 1
        error("enough")
    end
    calls += 1
    return 0, 0, 0, 0
end
function killer(r)
    calls += 1
    p["killImage"](image)
end
function wordy()
    calls += 1
    return "red"
end
print(pcall(p["shader"], image, failing, not, 1, true))         @@ expect: false\tenough
print(pcall(p["shader"], image, wordy, not, 1, true))           @@ expect: false\tPlush.shader: a shader function must return numbers
show(image)                             @@ expect: 50\t100\t225\t255\t200\t100\t50\t255
print(pcall(p["shader"], image, killer, not, 1, true))          @@ expect: false\tPlush.shader: image must be a valid image

@@ Errors.
image = picture(1, 2, 3, 4)
print(pcall(p["shader"], image, "r = 1", not, 17))      @@ expect: false\tPlush.shader: scale must be between 0 and 16
print(pcall(p["shader"], image, "r = 1", not, 0))       @@ expect: false\tPlush.shader: scale must be between 0 and 16
print(pcall(p["shader"], image, "r = 1", 5))            @@ expect: false\tPlush.shader: uniforms must be a table
print(pcall(p["shader"], image, "r = 1", {k = "v"}))    @@ expect: false\tPlush.shader: uniform 'k' must be numeric
print(pcall(p["shader"], image, "r = "))                @@ expect: false\tPlush.shader: shader line 1: unexpected 'end of line' in expression
print(pcall(p["shader"], not, "r = 1"))                 @@ expect: false\tPlush.shader: image must be a valid image
print(pcall(p["shader"], image))                        @@ expect: false\tPlush.shader: missing argument 2
print(pcall(p["modifyImage"], image, 9))                @@ expect: false\tPlush.modifyImage: unknown processor 9
print(pcall(p["modifyImage"], image, -1.5))             @@ expect: false\tPlush.modifyImage: unknown processor -1
print(pcall(p["modifyImage"], image, not))              @@ expect: false\tPlush.modifyImage: process must be a processor id, shader source, compiled shader or function
print(pcall(p["modifyImage"], image, 5, "red"))         @@ expect: false\tPlush.modifyImage: r must be numeric
print(pcall(p["modifyImage"], image, "r = level"))      @@ expect: false\tPlush.modifyImage: shader uses uniform 'level' which was not supplied
print(pcall(p["compileShader"], {}))                    @@ expect: false\tPlush.compileShader: shader must be shader source, a processor id or a function
print(pcall(p["killShader"], not))                      @@ expect: false\tPlush.killShader: shader must be a live compiled shader
p["killShader"](5)                                      @@ error: Plush.killShader: shader must be a pointer
