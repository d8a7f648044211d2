[playlist]
NumberOfEntries=3
File1=http://radio.example:8000/stream
Title1=Radio Example
Length1=-1
File2=../music/paper-lantern.ogg
Title2=Paper Lantern
Length2=1
File4=../music/door-bell.wav
Version=2
