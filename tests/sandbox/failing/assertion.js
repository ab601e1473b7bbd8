print("one is not two");
assertEqual(1, 2);
