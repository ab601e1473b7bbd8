const fine = 1;
nonsense(fine);
