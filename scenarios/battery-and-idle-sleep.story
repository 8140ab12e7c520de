Saturday, 1 March 2014

22:30:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); asleep: airplane mode.
22:31:00  The phone sleeps 4 times, woken 3 times by a scheduled wake-up.
23:29:30  A button is pressed.
          The phone wakes up.
23:30:00  The phone is laid down, screen down.
23:30:01  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the airplane-mode sound.
23:30:03  Reading 2 of 3: lying screen down, 0.0° off.
23:30:05  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, switches airplane mode on.
          The phone is in the sleep state.
23:30:30  The phone sleeps 29 times, woken 28 times by a scheduled wake-up.

Sunday, 2 March 2014

06:50:00  The phone is taken into the hand.
07:00:55  The scheduled wake-up wakes the phone.
07:00:56  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
07:00:58  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
07:01:00  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the off sound, vibrates, switches airplane mode off.
          The phone is awake again.
07:01:55  The phone sleeps 2 times, woken once by a scheduled wake-up.
07:30:00  A button is pressed.
          The phone wakes up.
07:31:00  The phone sleeps 2 times, woken once by a scheduled wake-up.

Summary of 9 h 30 min
  in the sleep state    7 h 30 min
  transitions           2
  readings              374, accelerometer on for 6 min 14 s
  wake-ups              374 scheduled, 33 fired
  idle sleeps           0 refused, 37 allowed, 8 h 39 min in all
  applications          0 launched, 0 quit
