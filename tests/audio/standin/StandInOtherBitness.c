/* A library built for the other bitness than the suite: the players must say so and name the program
   that can load it. */
__declspec(dllexport) int StandInOtherBitness(void) {
  return 0;
}
