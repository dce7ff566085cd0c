// Placeholder: the tests of this file arrive with the code they test.
