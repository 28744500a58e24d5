# Plots a track over time: gnuplot -c track.gnuplot TRACK.csv PICTURE.png
set terminal pngcairo size 1280,900
set output ARG2
set datafile separator ','
set grid
set xlabel 'time in seconds'
set key outside right samplen 2
stats ARG1 using (column('found') == 0 && strlen(strcol('x')) > 0 ? 1 : 0) nooutput
isPredicted(title) = STATS_sum > 0 ? title : ''
found(value) = column('found') == 1 ? value : NaN
predicted(value) = column('found') == 0 ? value : NaN
speed(row) = sqrt(column('vx')**2 + column('vy')**2)
set multiplot layout 3,1
set ylabel 'x of the centre in pixels'
plot ARG1 using 'time':(found(column('x'))) with lines lw 2 title 'found', \
     '' using 'time':(predicted(column('x'))) with points pt 7 ps 0.5 title isPredicted('predicted')
set ylabel 'y, downward, in pixels'
set yrange [*:*] reverse
plot ARG1 using 'time':(found(column('y'))) with lines lw 2 title 'found', \
     '' using 'time':(predicted(column('y'))) with points pt 7 ps 0.5 title isPredicted('predicted')
set ylabel 'speed in pixels per second'
set yrange [0:*] noreverse
plot ARG1 using 'time':(found(speed(0))) with lines lw 2 title 'found', \
     '' using 'time':(predicted(speed(0))) with points pt 7 ps 0.5 title isPredicted('predicted')
