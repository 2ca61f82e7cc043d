@@ Eleven Minutes Dark: a clock-mender, a lighthouse that has begun to sleep, and whoever folds the leaves.

runFile(append + "/story/story.vs")
Novel["play"](gameCards)
