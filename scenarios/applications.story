Saturday, 1 March 2014

22:30:00  SpringBoard has launched; the monitor starts.
          Settings: a reading every 5 s; lying screen down (sensitivity 5); when quiet: airplane mode; applications to launch: com.apple.mobiletimer, com.example.sleeprecorder, com.example.hidden, com.example.notinstalled.
          Odd: "launch-app-com.example.notinstalled" is on, but the phone does not have this application.
23:30:00  The phone is laid down, screen down.
23:30:01  Reading 1 of 3: lying screen down, 0.0° off.
          It plays the warning sound.
23:30:03  Reading 2 of 3: lying screen down, 0.0° off.
23:30:05  Reading 3 of 3: lying screen down, 0.0° off.
          It vibrates, launches com.apple.mobiletimer, cannot launch com.example.hidden, which has no icon, brings up com.example.sleeprecorder, switches airplane mode on.
          The phone is quiet.

Sunday, 2 March 2014

06:50:00  The phone is taken into the hand.
06:50:05  Reading 1 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:07  Reading 2 of 3: not lying screen down (143.1° off, 1.00 g).
06:50:09  Reading 3 of 3: not lying screen down (143.1° off, 1.00 g).
          It plays the return sound, vibrates, quits com.apple.mobiletimer, quits com.example.hidden, quits com.example.sleeprecorder, switches airplane mode off.
          The phone is back.

Quiet for 7 h 20 min, everything came back.

Figures of 9 h 30 min
  quiet                 7 h 20 min, from 23:30:05 to 06:50:09
  readings              5703, accelerometer on for 1 h 35 min
  wake-ups              one kept 15 minutes ahead (renewed 5703 times); it never woke the phone
  idle sleeps           0 refused, 0 allowed, 0 s in all
  applications          2 launched, 3 quit
