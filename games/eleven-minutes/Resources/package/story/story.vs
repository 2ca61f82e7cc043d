@@ The whole story. The translators' tool runs this as well.

for novelPart in ["people", "places", "1-lighthouse", "2-library", "3-grove", "4-night", "5-endings", "first-edition", "cards"]
    runFile(append + "/story/" + novelPart + ".vs")
end
