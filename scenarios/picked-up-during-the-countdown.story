Saturday, 1 March 2014

23:00:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); when quiet: airplane mode.
23:01:00  The phone goes into idle sleep.
23:09:40  A button is pressed.
          The idle sleep ends.
23:10:00  The phone is laid down, screen down.
23:10:05  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:10:07  Reading 2 of 3: lying screen down, 0.0° off.
23:10:08  The phone is taken into the hand.
23:10:09  A reading: not lying any more. The countdown is dropped.
23:10:40  The phone asks for idle sleep: refused, also when it asks again, while a countdown counts as under way.
23:15:00  The phone is laid down, screen down.
23:15:03  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:15:05  Reading 2 of 3: lying screen down, 0.0° off.
23:15:07  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, switches airplane mode on.
          The phone is quiet.
23:15:10  The phone goes into idle sleep.

Quiet for 14 min 53 s, and still quiet at the end.

Figures of 30 min 00 s
  quiet                 14 min 53 s, from 23:15:07 to the end
  readings              68, accelerometer on for 1 min 08 s
  wake-ups              one kept 15 minutes ahead (renewed 68 times); it never woke the phone
  idle sleeps           27 refused, 2 allowed, 8 min 40 s in all
  applications          0 launched, 0 quit
