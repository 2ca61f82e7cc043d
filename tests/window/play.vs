@@ Plays the half second that is named: for a while in a loop, then once to its end.
track = Audio["open"](arguments[1])
print(Audio["play"](track, true))
Vesper["sleep"](800)
offset = Audio["pause"](track)
print(offset > 0 and offset < 500)
print(Audio["play"](track, false))
Vesper["sleep"](1500)
print(Audio["pause"](track))
