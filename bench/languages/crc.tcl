proc main {} {
  set s "0123456789abcdef"
  while {[string length $s] < 262144} { append s $s }
  set crc 0xFFFFFFFF; set i 0
  while {$i < 262144} {
    scan [string range $s $i $i] %c byte
    set crc [expr {$crc ^ $byte}]
    set k 0
    while {$k < 8} {
      if {$crc & 1} { set crc [expr {($crc >> 1) ^ 0xEDB88320}] } else { set crc [expr {$crc >> 1}] }
      incr k
    }
    incr i
  }
  puts [expr {~$crc & 0xFFFFFFFF}]
}
main
