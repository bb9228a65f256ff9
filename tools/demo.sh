#!/bin/sh
# demo.sh ZAM FOLDER: renders the two examples and says where the pictures are.
set -eu
zam=$1
out=$2

echo "Three beams: every spot model, from a hard edge to full feather, onto a floor"
"$zam" render examples/three-beams/three-beams.json -o "$out/three-beams/####.png" --resolution half --over '#08090e'
echo "Stage: lights, camera and animation from Blender, through glTF"
"$zam" render examples/stage/stage.gltf -o "$out/stage/####.png" --resolution half --over '#08090e' \
    --set 'Spot Light Model=Distance' --set 'Spot Lights/Intensity=450' --set 'Spot Lights/Reach=900' \
    --set "Point Lights/Light's Intensity=off" --set 'Point Lights/Intensity=55' --set 'Softness [%]=8'
echo
echo "Pictures, over a dark background:"
echo "    $out/three-beams/0000.png (natural), 0030.png (distance), 0060.png (constant)"
echo "    $out/stage/0010.png, 0038.png"
