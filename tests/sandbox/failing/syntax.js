const fine = 1;
const = 2;
