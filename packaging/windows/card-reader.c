/* The stand-in of a card reader (demo/card-reader/MyKadReader) for the trial of the Windows package: lays the next card
   of cards\ beside itself. */
#include <stdio.h>
#include <string.h>
#include <windows.h>

int main(int argc, char** argv) {
  char folder[MAX_PATH], last[MAX_PATH] = "", first[MAX_PATH] = "", next[MAX_PATH] = "", card[MAX_PATH + 8];
  WIN32_FIND_DATAA found;
  if (argc != 2 || strcmp(argv[1], "Read") != 0) return 2;
  GetModuleFileNameA(NULL, folder, sizeof folder);
  *strrchr(folder, '\\') = 0;
  SetCurrentDirectoryA(folder);
  FILE* file = fopen("last", "r");
  if (file != NULL) {
    if (fscanf(file, "%255s", last) != 1) *last = 0;
    fclose(file);
  }
  HANDLE all = FindFirstFileA("cards\\*.txt", &found);
  if (all == INVALID_HANDLE_VALUE) return 1;
  do {
    const char* name = found.cFileName;
    if (*first == 0 || strcmp(name, first) < 0) strcpy(first, name);
    if (strcmp(name, last) > 0 && (*next == 0 || strcmp(name, next) < 0)) strcpy(next, name);
  } while (FindNextFileA(all, &found));
  FindClose(all);
  if (*next == 0) strcpy(next, first);
  sprintf(card, "cards\\%s", next);
  if (!CopyFileA(card, "MyKad.txt", FALSE)) return 1;
  strcpy(strrchr(card, '.'), ".jpg");
  if (!CopyFileA(card, "Photo.jpg", FALSE)) return 1;
  file = fopen("last", "w");
  if (file == NULL) return 1;
  fprintf(file, "%s\n", next);
  return fclose(file);
}
