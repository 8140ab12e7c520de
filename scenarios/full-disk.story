Saturday, 1 March 2014

22:30:00  SpringBoard has launched; the monitor starts.
          The disk is full.
          There is no settings file, and none can be written.
          Settings: monitoring is off.
22:30:07  No readings: monitoring is off.
23:30:00  The phone is laid down, screen down.
23:50:00  The disk can be written again.
          The settings screen announces a change.
          There is no settings file: one with the defaults is written.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); when quiet: airplane mode.
23:50:01  Readings are taken again.
          Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:50:03  Reading 2 of 3: lying screen down, 0.0° off.
23:50:05  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, switches airplane mode on.
          The phone is quiet.

Sunday, 2 March 2014

06:50:00  The phone is taken into the hand.
06:50:05  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:07  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:09  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates, switches airplane mode off.
          The phone is back.

Quiet for 7 h 00 min, everything came back.

Figures of 9 h 30 min
  quiet                 7 h 00 min, from 23:50:05 to 06:50:09
  readings              4903, accelerometer on for 1 h 21 min
  wake-ups              one kept 15 minutes ahead (renewed 4903 times); it never woke the phone
  idle sleeps           0 refused, 0 allowed, 0 s in all
  applications          0 launched, 0 quit
