@@ Where the story goes. `far` to `near` are the four planes of a place; weather falls behind the people, or behind
@@ the plane that `behind` names.
@@ `factors` say how far each plane goes with the camera, from the sky to the nearest; `light` is what the place
@@ leaves of the red, green and blue of whoever stands in it.

Novel["places"]({
    dusk = {far = "dusk-sky.png", back = "dusk-sea.png", middle = "dusk-point.png", near = "dusk-grass.png", factors = [0.09, 0.17, 0.25, 0.34], light = [0.98, 0.84, 0.92], music = "light", weather = "down"},
    gears = {far = "dusk-sky.png", back = "lamp-wall.png", middle = "lamp-works.png", near = "lamp-bench.png", factors = [0.06, 0.14, 0.2, 0.3], light = [1.0, 0.92, 0.82], music = "clockwork"},
    library = {far = "library-garden.png", back = "library-wall.png", middle = "library-room.png", near = "library-desk.png", factors = [0.06, 0.14, 0.2, 0.3], light = [1.0, 0.93, 0.84], music = "rain", weather = "rain", behind = "back"},
    grove = {far = "grove-light.png", back = "grove-wood.png", middle = "grove-shrine.png", near = "grove-roots.png", factors = [0.09, 0.17, 0.25, 0.34], light = [1.0, 0.95, 0.84], music = "grove", weather = "leaves"},
    night = {far = "night-sky.png", back = "night-sea.png", middle = "night-point.png", near = "night-grass.png", factors = [0.09, 0.17, 0.25, 0.34], light = [0.8, 0.84, 0.98], music = "clockwork", weather = "down"},
    works = {far = "night-sky.png", back = "lamp-wall.png", middle = "lamp-works.png", near = "lamp-bench.png", factors = [0.06, 0.14, 0.2, 0.3], light = [1.0, 0.9, 0.78], music = "clockwork"},
    waiting = {far = "crossing-sky.png", back = "waiting-sea.png", middle = "crossing-point.png", near = "crossing-grass.png", factors = [0.09, 0.17, 0.25, 0.34], light = [0.68, 0.72, 0.98], music = "sea"},
    crossing = {far = "crossing-sky.png", back = "crossing-sea.png", middle = "crossing-point.png", near = "crossing-grass.png", factors = [0.09, 0.17, 0.25, 0.34], light = [0.68, 0.72, 0.98], music = "wings", weather = "birds", behind = "middle"},
    morning = {far = "morning-sky.png", back = "morning-sea.png", middle = "morning-point.png", near = "morning-grass.png", factors = [0.09, 0.17, 0.25, 0.34], light = [1.0, 0.97, 0.92], music = "light", weather = "down"},
    kitchen = {far = "morning-sky.png", back = "kitchen-wall.png", middle = "kitchen-range.png", near = "kitchen-table.png", factors = [0.06, 0.14, 0.2, 0.3], light = [1.0, 0.97, 0.9], music = "light"}
})

Novel["weather"]("birds", {pictures = ["bird1.png", "bird2.png", "bird3.png", "bird2.png"], pieces = 90, drift = 4, flap = 4, band = [6, 236], scale = [2, 8], stays = true})

Novel["weather"]("rain", {pictures = ["rain.png"], pieces = 46, fall = 42, tilt = 4})
Novel["weather"]("leaves", {pictures = ["leaf1.png", "leaf2.png", "leaf3.png"], pieces = 26, fall = 5, sway = 3, turn = 5, reach = [20, 60], scale = [6, 11]})
Novel["weather"]("down", {pictures = ["down.png"], pieces = 12, fall = -2, sway = 2, turn = 1, reach = [20, 50]})
