local s = "12,345,6789,-5,99,"; while #s < 500000 do s = s .. s end
local at, sum = 1, 0
local nxt = string.find(s, ",", at, true)
while nxt do sum = sum + math.tointeger(tonumber(string.sub(s, at, nxt - 1))); at = nxt + 1; nxt = string.find(s, ",", at, true) end
io.write(sum, "\n")
