assertEqual(plugins().length, 1);
