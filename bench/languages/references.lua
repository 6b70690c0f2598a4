local function add(t, n) t.v = t.v + n end
local t, i = { v = 0 }, 0
while i < 500000 do add(t, i); i = i + 1 end
io.write(t.v, "\n")
