Saturday, 1 March 2014

22:30:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); when quiet: 3G off.
23:29:00  A call is under way.
23:30:00  The phone is laid down, screen down.
23:30:01  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:30:03  Reading 2 of 3: lying screen down, 0.0° off.
23:30:05  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, leaves the data rate as it is, because of a call.
          The phone is quiet.
23:45:00  The call is over.

Sunday, 2 March 2014

00:10:00  The phone is taken into the hand.
00:10:05  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
00:10:07  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
00:10:09  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates.
          The phone is back.
00:20:00  The phone is laid down, screen down.
00:20:03  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
00:20:05  Reading 2 of 3: lying screen down, 0.0° off.
00:20:07  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, allows data rates up to 3G, allows data rates up to 2G.
          The phone is quiet.
06:49:50  A call comes in.
06:50:00  The phone is taken into the hand.
06:50:01  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:03  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:05  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates, leaves the data rate as it is, because of a call.
          The phone is back.
06:55:00  The call is over.

Not back: the data rate is 2G since 06:50:05, and was 4G before. With AirplaneSwitch on everything would have come back at 06:50:05.

Figures of 9 h 30 min
  quiet                 7 h 10 min in 2 stretches, from 23:30:05 to 06:50:05
  readings              5706, accelerometer on for 1 h 35 min
  wake-ups              one kept 15 minutes ahead (renewed 5706 times); it never woke the phone
  idle sleeps           0 refused, 0 allowed, 0 s in all
  applications          0 launched, 0 quit
