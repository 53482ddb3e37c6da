set width 0
break Stop
run
up
echo text =\ 
output text
echo \nnumbers =\ 
output numbers
echo \nnames =\ 
output names
echo \npoint =\ 
output point
echo \nmatrix =\ 
output matrix
echo \n
kill
