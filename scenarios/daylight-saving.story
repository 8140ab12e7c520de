Saturday, 29 March 2014

21:30:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); from 22:00 to 7:00; when quiet: airplane mode.
21:30:07  No readings: it is not between 22:00 and 7:00.
21:45:00  The phone is laid down, screen down.
22:00:06  Readings are taken again.
          Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
22:00:08  Reading 2 of 3: lying screen down, 0.0° off.
22:00:10  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, switches airplane mode on.
          The phone is quiet.

Sunday, 30 March 2014

07:30:00  The phone is taken into the hand.
07:30:04  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
07:30:06  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
07:30:08  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates, switches airplane mode off.
          The phone is back.
07:30:15  No readings: it is not between 22:00 and 7:00.

Quiet for 8 h 29 min, everything came back.

Figures of 9 h 30 min
  quiet                 8 h 29 min, from 22:00:10 to 07:30:08
  readings              5104, accelerometer on for 1 h 25 min
  wake-ups              one kept 15 minutes ahead (renewed 5823 times); it never woke the phone
  idle sleeps           0 refused, 0 allowed, 0 s in all
  applications          0 launched, 0 quit
