import sys
i = 0
while i < 100000: sys.stdout.write("line "); sys.stdout.write(str(i)); sys.stdout.write("\n"); i += 1
