p = Plush
print(pcall(p["setMap"], [], [], [], [], [], []))                   @@ expect: false\tPlush.setMap: expected 7 arguments
print(pcall(p["setMap"], 1, [], [], [], [], [], []))                @@ expect: false\tPlush.setMap: argument 1 (walls) must be a table of integer tables
print(pcall(p["setMap"], [], [["a"]], [], [], [], [], []))          @@ expect: false\tPlush.setMap: argument 2 (roofs) must be a table of integer tables
print(pcall(p["setMap"], [], [], [1], [], [], [], []))              @@ expect: false\tPlush.setMap: argument 3 (floors) must be a table of integer tables
print(pcall(p["setMap"], [], [], [], "", [], [], []))               @@ expect: false\tPlush.setMap: argument 4 (roofsOff) must be a table of integer tables
print(pcall(p["setMap"], [], [], [], [], {x = []}, [], []))         @@ expect: false\tPlush.setMap: argument 5 (floorsOff) must be a table of integer tables
image = p["createImage"](4, 4, 10, 20, 30, 255)
print(pcall(p["setMap"], [], [], [], [], [], [image], []))          @@ expect: false\tPlush.setMap: argument 6 (textures) must be a table with first element nil, followed by image pointers or nil
print(pcall(p["setMap"], [], [], [], [], [], [not, 5], []))         @@ expect: false\tPlush.setMap: argument 6 (textures) must be a table with first element nil, followed by image pointers or nil
print(pcall(p["setMap"], [], [], [], [], [], [not, image], [5]))    @@ expect: false\tPlush.setMap: argument 7 (quads) must be a table of quad tables
print(pcall(p["setQuads"], 5))                                      @@ expect: false\tPlush.setQuads: argument 1 (quads) must be a table of quad tables
print(pcall(p["setQuads"]))                                         @@ expect: false\tPlush.setQuads: missing argument 1

quad = {tl = [0, 0, 4], tr = [4, 0, 4], br = [4, 4, 8], bl = [0, 4, 8], texture = 1}
print(p["setQuads"]([quad]))                                        @@ expect: not
quad["tl"] = [0, 0, "x"]
print(pcall(p["setQuads"], [quad]))                                 @@ expect: false\tPlush.setQuads: quad coordinate must be numeric
quad["tl"] = [0, 0]
print(pcall(p["setQuads"], [quad]))                                 @@ expect: false\tPlush.setQuads: argument 1 (quads) must be a table of quad tables
quad["tl"] = {0, 0, 4}
quad["texture"] = not
print(pcall(p["setQuads"], [quad]))                                 @@ expect: false\tPlush.setQuads: argument 1 (quads) must be a table of quad tables

@@ the player
print(p["getPlayerPosition"]())             @@ expect: 24.000000\t24.000000
p["movePlayer"](10, false)
print(p["getPlayerPosition"]())             @@ expect: 24.000000\t34.000000
p["movePlayer"](-4.5, true)
print(p["dontMovePlayer"](2, true))         @@ expect: 21\t34
print(p["getPlayerPosition"]())             @@ expect: 19.500000\t34.000000
print(pcall(p["movePlayer"], 1))            @@ expect: false\tPlush.movePlayer: missing argument 2
p["setPlayerPosition"](24, 24)
print(p["getPlayerHeight"]())               @@ expect: 6.000000
p["setPlayerHeight"](7, 1.5)
print(p["getPlayerHeight"]())               @@ expect: 8.500000
p["setPlayerHeight"](6)
p["setPlayerRotation"](1.5)
p["setTilt"](-0.5)
p["setRenderDistance"](320)
p["setAccuracy"](-3)
print(p["getPlayerRotation"](), p["getTilt"](), p["getRenderDistance"](), p["getAccuracy"]())   @@ expect: 1.500000\t-0.500000\t320.000000\t-3
print(p["getFov"]())                        @@ expect: 90
for degrees = -720, 720
    p["setFov"](degrees)
    if p["getFov"]() != degrees
        print("degrees", degrees, p["getFov"]())
    end
end

@@ a picture: one wall of the texture's colour around the player
p["setPlayerRotation"](0)
p["setTilt"](0)
p["setFov"](0)
p["setRenderDistance"](1000000000)
p["setLightLevel"](1, 1)
p["fog"](1, 2, 3)
ring = [[1, 1, 1], [1, 0, 1], [1, 1, 1]]
p["setMap"](ring, [], [], [], [], [not, image], [])
screen = p["createImage"](8, 8, 0, 0, 0, 0)
print(p["raycast"](screen))                 @@ expect: not
print(p["getPixel"](screen, 5, 5))          @@ expect: 10\t20\t30\t255
p["setMap"]({"1": {"1": 0, "3": 1}, "2": {"2": 0}, "3": {"2": 1}}, [], [], [], [], {"2": image}, [])
p["raycast"](screen)
print(p["getPixel"](screen, 5, 5))          @@ expect: 10\t20\t30\t255
p["killImage"](image)
p["raycast"](screen)
print(p["getPixel"](screen, 5, 5))          @@ expect: 1\t2\t3\t255
print(pcall(p["raycast"], image))           @@ expect: false\tPlush.raycast: output must be a valid image
p["spawnLight"](1, 2, 3, 4, 5, 6, 7)
p["clearLights"]()
p["setRaytrace"](100)
p["setReflection"](0.5)
p["setSize"](16)

@@ faces
j = Jade
ramp = {tl = [0, 0, 4], tr = [4, 0, 4], br = [4, 4, 8], bl = [0, 4, 8]}
print(j["height"](ramp, 2, 0), j["height"](ramp, 1, 3), j["height"](ramp, 5, 1))    @@ expect: 4.000000\t7.000000\tfalse
print(j["centre"]([ramp]))                                          @@ expect: 2.000000\t2.000000\t6.000000
print(pcall(j["height"], 5, 1, 1))                                  @@ expect: false\tJade.height: argument 1 (quad) must be a quad table
print(pcall(j["centre"], 5))                                        @@ expect: false\tJade.centre: argument 1 (quads) must be a table of quad tables
print(pcall(j["contains"], [ramp], 1, 1, 1))                        @@ expect: false\tJade.contains: argument 1 (box) must be a table of 6 quad tables
print(pcall(j["contains"], [1, 2, 3, 4, 5, 6], 1, 1, 1))            @@ expect: false\tJade.contains: argument 1 (box) must be a table of 6 valid quad tables
print(j["visible"](0, 0, 5, 5, 0, 1.6), j["visible"](0, 0, 5, 5, 0, 1.5), j["visible"](0, 0, -5, 0, 0, 3))   @@ expect: true\tfalse\tfalse
@@ turned round by an eighth
box = []
faces = [[0, -2, 2, 0], [2, 0, 0, 2], [0, 2, -2, 0], [-2, 0, 0, -2]]
for i = 1, 4
    f = faces[i]
    push(box, {tl = [f[1], f[2], 4], tr = [f[3], f[4], 4], br = [f[3], f[4], 0], bl = [f[1], f[2], 0]})
end
for z = 0, 4, 4
    push(box, {tl = [0, -2, z], tr = [2, 0, z], br = [0, 2, z], bl = [-2, 0, z]})
end
print(j["contains"](box, 0, 0, 2), j["contains"](box, 1, 1, 4), j["contains"](box, 1.5, 1.5, 2), j["contains"](box, 0, 0, 5))   @@ expect: true\ttrue\tfalse\tfalse

@@ points into pictures
p["setPlayerPosition"](24, 24)
p["setFov"](90)
print(p["project"](40, 24, 10, 100, 50))    @@ expect: 50.000000\t25.000000\t16.000000
print(p["project"](0, 24, 10))              @@ expect: not
print(p["sortVertex"]([[30, 24, 10], [90, 24, 10], ramp, [24, 24, 10]])[1][1])    @@ expect: 90
print(pcall(p["sortVertex"], [[1, 2]]))     @@ expect: false\tPlush.sortVertex: argument 1 (vertices) must be a table of points or quads
print(p["projection"](screen))              @@ expect: not
print(pcall(p["projection"], image))        @@ expect: false\tPlush.projection: output must be a valid image
