local s = "0123456789abcdef"; while #s < 262144 do s = s .. s end
local crc, i = 0xFFFFFFFF, 0
while i < 262144 do
  crc = crc ~ string.byte(string.sub(s, i + 1, i + 1))
  local k = 0
  while k < 8 do if crc & 1 ~= 0 then crc = (crc >> 1) ~ 0xEDB88320 else crc = crc >> 1 end; k = k + 1 end
  i = i + 1
end
io.write(~crc & 0xFFFFFFFF, "\n")
