proc add {name n} { upvar 1 $name t; incr t $n }
proc main {} {
  set t 0; set i 0
  while {$i < 500000} { add t $i; incr i }
  puts $t
}
main
