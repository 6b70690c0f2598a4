s = []
i = 0
while i < 1000000: s.append("x"); i += 1
print(len("".join(s)))
