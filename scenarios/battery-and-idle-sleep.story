Saturday, 1 March 2014

22:30:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); when quiet: airplane mode.
22:31:00  The phone goes into idle sleep 4 times, woken 3 times by a scheduled wake-up.
23:29:30  A button is pressed.
          The idle sleep ends.
23:30:00  The phone is laid down, screen down.
23:30:01  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:30:03  Reading 2 of 3: lying screen down, 0.0° off.
23:30:05  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, switches airplane mode on.
          The phone is quiet.
23:30:30  The phone goes into idle sleep 29 times, woken 28 times by a scheduled wake-up.

Sunday, 2 March 2014

06:50:00  The phone is taken into the hand.
07:00:55  The scheduled wake-up ends the idle sleep.
07:00:56  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
07:00:58  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
07:01:00  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates, switches airplane mode off.
          The phone is back.
07:01:55  The phone goes into idle sleep 2 times, woken once by a scheduled wake-up.
07:30:00  A button is pressed.
          The idle sleep ends.
07:31:00  The phone goes into idle sleep 2 times, woken once by a scheduled wake-up.

Quiet for 7 h 30 min, everything came back.

Figures of 9 h 30 min
  quiet                 7 h 30 min, from 23:30:05 to 07:01:00
  readings              374, accelerometer on for 6 min 14 s
  wake-ups              one kept 15 minutes ahead (renewed 374 times); it woke the phone 33 times
  idle sleeps           0 refused, 37 allowed, 8 h 39 min in all
  applications          0 launched, 0 quit
