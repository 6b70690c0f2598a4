local i = 0
while i < 100000 do io.write("line ", i, "\n"); i = i + 1 end
